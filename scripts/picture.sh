#!/usr/bin/env bash
# scripts/picture.sh MODEL PICTURE: shows MODEL in the window under a virtual display and keeps what it looks like.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
model=$1
picture=$2

frame() {
  openbox &
  build/release/bin/velmora "$model" &
  local program=$!
  # The picture is there when the frame was painted: poll instead of trusting a fixed time.
  for _ in $(seq 60); do
    sleep 0.5
    import -window root "$picture"
    [ "$(identify -format %k "$picture")" -gt 200 ] && break
  done
  sleep 1
  import -window root "$picture"
  kill "$program"
}

export -f frame
export model picture LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb
xvfb-run -a -s "-screen 0 1280x800x24" bash -c frame 2>/dev/null
echo "Picture: $picture"
