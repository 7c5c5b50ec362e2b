#!/usr/bin/env bash
# scripts/picture.sh MODEL PICTURE: shows MODEL in the window under a virtual display and keeps what it looks like.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
model=$1
picture=$2

if [ "${3-}" != inside ]; then
  export LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb
  xvfb-run -a -s "-screen 0 1280x800x24" scripts/picture.sh "$model" "$picture" inside 2>/dev/null
  echo "Picture: $picture"
  exit
fi

openbox &
build/release/bin/velmora "$model" &
program=$!
# The picture is there when the model was painted, in its many shades: poll instead of trusting a fixed time.
for _ in $(seq 60); do
  sleep 0.5
  import -window root "$picture"
  [ "$(identify -format %k "$picture")" -gt 500 ] && break
done
sleep 1
import -window root "$picture"
kill "$program"
