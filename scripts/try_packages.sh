#!/usr/bin/env bash
# scripts/try_packages.sh FOLDER: installs the packages of a folder by apt, tries what they promise, removes them, and looks
# whether a trace is left. For a system that may be spoiled: scripts/bare_machine.sh --packages makes one and runs this there.
set -euo pipefail
folder=$(realpath "${1:?the folder of the packages}")
export DEBIAN_FRONTEND=noninteractive
examples=/usr/share/doc/velmora-doc/examples

step() { echo "== $*"; }
fail() {
  echo "$*" >&2
  exit 1
}
# says WHAT: the input has a line with it. All of it is read, so that the writer ends well.
says() { grep -- "$1" >/dev/null; }

# What stands outside of what changes by itself, with a line for each file.
traces() {
  find / -xdev \( -path /proc -o -path /sys -o -path /tmp -o -path /velmora -o -path "$folder" -o -path /var/cache -o \
    -path /var/log -o -path /var/lib/apt -o -path /var/lib/dpkg -o -path /root \) -prune -o -iname '*velmora*' -print
}

apt-get update -qq
step "The headless package alone: no desktop, no OpenGL"
apt-get install -y -qq --no-install-recommends "$folder"/velmora-cli_*.deb >/dev/null
[ "$(velmora-batch --version)" = "velmora-batch $(dpkg-query -W -f '${Version}' velmora-cli)" ]
if dpkg-query -W -f '${Package}\n' | grep -E '^(libqt[56]|libgl1|libglu1|libopengl0|libx11)'; then
  fail "the headless package brings libraries of the desktop"
fi
if ldd /usr/bin/velmora-batch | says 'not found'; then
  fail "velmora-batch lacks a library"
fi

step "All of them"
# What looks at the result comes too: man, the desktop's tools, a display to open a window on.
apt-get install -y -qq --no-install-recommends man-db xdg-utils xvfb xauth openbox xdotool >/dev/null
# Minimal systems leave out the manual and the documents of packages.
rm -f /etc/dpkg/dpkg.cfg.d/docker /etc/dpkg/dpkg.cfg.d/excludes
apt-get install -y -qq --no-install-recommends "$folder"/*.deb >/dev/null

step "Scripts"
work=$(mktemp -d)
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
bash -c '. /usr/share/bash-completion/completions/velmora-batch; complete -p velmora-batch' >/dev/null

step "Removed"
apt-get purge -y -qq 'velmora*' 'python3-velmora' >/dev/null
left=$(traces)
[ -z "$left" ] || fail "left behind: $left"
if grep -rs velmora /usr/share/mime /usr/share/applications /usr/share/icons/hicolor; then
  fail "the desktop still knows of it"
fi
echo "== the packages work, and leave nothing behind"
