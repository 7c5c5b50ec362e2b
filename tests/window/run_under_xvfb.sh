#!/bin/sh
# Runs a command with a display of its own: Xvfb with a software OpenGL, a window manager, and an empty home, so that
# nothing of the user's desktop or settings plays a part. The exit status is the command's.
#
#     run_under_xvfb.sh COMMAND [ARGUMENT]...
set -eu

home=$(mktemp -d)
server=""
manager=""
# Only the processes started here are ended, each by its own number.
clean_up() {
    for process in $manager $server; do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    rm -rf "$home"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# The server picks a free display and writes its number; the pipe ends the wait if it cannot start.
mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$home/display" 2>"$home/server.log" &
server=$!
read -r number <"$home/display" || { cat "$home/server.log" >&2; exit 1; }

export DISPLAY=":$number"
export HOME="$home"
export XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache" XDG_DATA_HOME="$home/data"
export XDG_STATE_HOME="$home/state" XDG_RUNTIME_DIR="$home/run"
mkdir -p "$home/Documents"
mkdir -m 700 "$XDG_RUNTIME_DIR"
unset WAYLAND_DISPLAY XDG_CURRENT_DESKTOP DBUS_SESSION_BUS_ADDRESS 2>/dev/null || true
export QT_QPA_PLATFORM=xcb LIBGL_ALWAYS_SOFTWARE=1 NO_AT_BRIDGE=1 QT_SCALE_FACTOR=1
export LC_ALL=C.UTF-8

# A window that comes before the manager is neither placed nor made active: wait until the manager says it is there.
openbox --startup "touch $home/managed" >"$home/manager.log" 2>&1 &
manager=$!
waited=0
until [ -e "$home/managed" ]; do
    waited=$((waited + 1))
    [ "$waited" -lt 200 ] || { cat "$home/manager.log" >&2; exit 1; }
    sleep 0.05
done
status=0
"$@" || status=$?
exit $status
