#!/usr/bin/env bash
# scripts/bare_machine.sh [--must] [--packages] COMMAND...: runs each COMMAND (./run, ./test) on a bare Debian 12 that is made anew:
# git and bash, and a clone of the last commit; nothing that somebody once installed by hand. So a package that setup.sh
# does not name is seen here first. With --packages those of build/packages (scripts/packages.sh) are tried there first.
# Needs root, since the system is a folder that commands run in by chroot; the folder (some gigabytes under $TMPDIR) is
# removed at the end. A package source that does not answer proves nothing about the project: what needs it is skipped,
# loudly; with --must that is a failure, as nothing was proved.
source "$(dirname "$0")/setup.sh"

packages='' status_of_skip=0
while :; do
  case ${1:-} in
    --packages) packages=build/packages ;;
    --must) status_of_skip=1 ;;
    *) break ;;
  esac
  shift
done
if [ "$(id -u)" -ne 0 ] || { [ $# -eq 0 ] && [ -z "$packages" ]; }; then
  echo "Usage, as root: scripts/bare_machine.sh [--must] [--packages] COMMAND..." >&2
  exit 2
fi

skip() {
  echo "!! SKIPPED, nothing was proved: $1" >&2
  exit "$status_of_skip"
}

clean_up() {
  local folder
  for folder in dev/shm proc; do
    ! mountpoint -q "$root/$folder" || umount "$root/$folder"
  done
  rm -rf --one-file-system "$base"
}

# The host's way to its package source (a proxy, say) is the bare system's too.
make_system() {
  rm -rf --one-file-system "$root"
  mmdebstrap --quiet --variant=minbase --include=ca-certificates,git bookworm "$root" || return
  cp -n /etc/apt/apt.conf.d/99* "$root/etc/apt/apt.conf.d/" 2>/dev/null || true
  cp /etc/hosts /etc/resolv.conf "$root/etc/" 2>/dev/null || true
}

run_inside() {
  env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin CI=true chroot "$root" bash -c "cd /velmora && $1" </dev/null
}

(install_missing mmdebstrap) || { [ $? -eq "$source_is_silent" ] && skip "mmdebstrap cannot be installed" || exit 1; }
base=$(mktemp -d "${TMPDIR:-/tmp}/bare-machine.XXXXXX")
root=$base/root
trap clean_up EXIT
echo "Making a bare system"
with_patience make_system || skip "no bare system could be made"
mount -t proc proc "$root/proc"
mkdir -p "$root/dev/shm"
mount -t tmpfs -o size=1g tmpfs "$root/dev/shm"
git clone --quiet --no-local . "$root/velmora"
if [ -n "$packages" ]; then
  mkdir -p "$root/tmp/packages"
  cp "$packages"/*.deb "$root/tmp/packages/"
  set -- "scripts/try_packages.sh /tmp/packages" "$@"
fi

failed=0
for command in "$@"; do
  echo "== on a bare system: $command"
  begin=$SECONDS status=0
  run_inside "$command" || status=$?
  case $status in
    0) echo "== passed in $((SECONDS - begin)) s: $command" ;;
    "$source_is_silent") skip "$command: the package source does not answer" ;;
    *) echo "== FAILED after $((SECONDS - begin)) s: $command" && failed=1 ;;
  esac
done
exit "$failed"
