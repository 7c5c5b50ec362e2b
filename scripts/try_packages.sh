#!/usr/bin/env bash
# scripts/try_packages.sh FOLDER: installs the packages of a folder by apt, tries what they promise, removes them, and looks
# whether a trace is left. For a system that may be spoiled: scripts/bare_machine.sh --packages makes one and runs this there.
set -euo pipefail
folder=$(realpath "${1:?the folder of the packages}")
export DEBIAN_FRONTEND=noninteractive
examples=/usr/share/doc/velmora-doc/examples
tests=$(realpath "$(dirname "$0")/../tests")
work=$(mktemp -d)

step() { echo "== $*"; }
fail() {
  echo "$*" >&2
  exit 1
}
# says WHAT: the input has a line with it. All of it is read, so that the writer ends well.
says() { grep -- "$1" >/dev/null; }

# install FILE...: by apt, without what is only recommended, so that each package proves that it names all it needs.
install() { apt-get install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 "$@" >/dev/null; }
# imports FILE: a box of twelve triangles and a script's way to see how many came.
imports() { velmora-batch -c "run file.import file=$1" -c 'print report' 2>&1; }

# What stands outside of what changes by itself, with a line for each file.
traces() {
  find / -xdev \( -path /proc -o -path /sys -o -path /tmp -o -path /velmora -o -path "$folder" -o -path /var/cache -o \
    -path /var/log -o -path /var/lib/apt -o -path /var/lib/dpkg -o -path /root \) -prune -o -iname '*velmora*' -print
}

apt-get update -qq
step "The headless package alone: no desktop, no OpenGL"
install "$folder"/velmora-cli_*.deb
[ "$(velmora-batch --version)" = "velmora-batch $(dpkg-query -W -f '${Version}' velmora-cli)" ]
if dpkg-query -W -f '${Package}\n' | grep -E '^(libqt[56]|libgl1|libglu1|libopengl0|libx11)'; then
  fail "the headless package brings libraries of the desktop"
fi
if ldd /usr/bin/velmora-batch | says 'not found'; then
  fail "velmora-batch lacks a library"
fi

step "Files of others: each package of readers brings its own kind, and without it the reason names it"
foreign=$work/foreign
mkdir "$foreign"
cp "$tests/data/box.step" "$foreign"
cat >"$foreign/triangle.wrl" <<'VRML'
#VRML V1.0 ascii
Separator {
  Coordinate3 { point [ 0 0 0, 1 0 0, 0 1 0 ] }
  IndexedFaceSet { coordIndex [ 0, 1, 2, -1 ] }
}
VRML
imports "$foreign/box.step" | says 'of the package velmora-cad,'
install "$folder"/velmora-readers_*.deb
imports "$foreign/box.step" | says 'of the package velmora-cad,'
imports "$foreign/triangle.wrl" | says '"triangles":1,'
velmora-batch --strict -c "run file.import file=$foreign/triangle.wrl" -c "run file.export file=$foreign/triangle.cgns" >/dev/null
imports "$foreign/triangle.cgns" | says '"triangles":1,'
if dpkg-query -W -f '${Package}\n' | grep '^libocct'; then
  fail "the readers bring the library for CAD"
fi
install "$folder"/velmora-cad_*.deb
imports "$foreign/box.step" | says '"triangles":12,'

step "All of them"
# What looks at the result comes too: man, the desktop's tools, a display to open a window on.
install man-db xdg-utils libfile-mimeinfo-perl xvfb xauth openbox xdotool
# Minimal systems leave out the manual and the documents of packages.
rm -f /etc/dpkg/dpkg.cfg.d/docker /etc/dpkg/dpkg.cfg.d/excludes
install "$folder"/*.deb

step "Scripts"
cp -r "$examples" "$work"
cd "$work/examples"
velmora-batch --strict -c 'open wing.apt' -c 'run line.inputSection patch=1 section=1' \
  -c 'run line.rebreak regime=2 newCount=81' -c 'run file.saveAs file=fine.apt' >/dev/null
says '^25 81' <fine.apt
velmora-batch --help-commands line.rebreak | says newCount

step "The manual"
for page in velmora-batch velmora; do
  man "$page" | says "$page"
done
man velmora-batch | says 'line.rebreak'

step "Python"
python3 -c 'import velmora; m = velmora.open("wing.apt"); assert m.patches[0].shape == (25, 61, 3); print(velmora.__version__)'
python3 python/finer_wing.py wing.apt finer.apt
python3 - "$foreign/box.step" <<'PYTHON'
import sys, velmora
m = velmora.Model()
m.run("file.import", file=sys.argv[1])
assert m.report()["triangles"] == 12
PYTHON

step "The desktop"
[ "$(velmora --version)" = "Velmora $(dpkg-query -W -f '${Version}' velmora)" ]
[ "$(xdg-mime query filetype wing.apt)" = application/x-velmora-grid ]
[ "$(xdg-mime query default application/x-velmora-grid)" = org.velmora.Velmora.desktop ]
cat >"$work/look.sh" <<'LOOK'
openbox &
xdg-open wing.apt &
for try in $(seq 60); do
  sleep 1
  xdotool search --name 'wing.apt' && exit 0
done
exit 1
LOOK
xvfb-run -a bash "$work/look.sh"

step "Completion in bash, fish and zsh"
install fish zsh
completed=$(bash -c '. /usr/share/bash-completion/completions/velmora-batch
  COMP_WORDS=(velmora-batch --help-commands line.reb) COMP_CWORD=2
  _velmora_batch
  echo "${COMPREPLY[*]}"')
[ "$completed" = line.rebreak ] || fail "bash completes to: $completed"
fish -c 'complete -C "velmora-batch --help-commands line.reb"' | says '^line.rebreak'
fish -c 'complete -C "velmora --obl"' | says '^--oblique'
for program in velmora velmora-batch; do
  zsh -n "/usr/share/zsh/vendor-completions/_$program"
done

step "Removed"
apt-get purge -y -qq 'velmora*' 'python3-velmora' >/dev/null
left=$(traces)
[ -z "$left" ] || fail "left behind: $left"
if grep -rs velmora /usr/share/mime /usr/share/applications /usr/share/icons/hicolor; then
  fail "the desktop still knows of it"
fi
echo "== the packages work, and leave nothing behind"
