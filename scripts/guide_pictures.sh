#!/usr/bin/env bash
# scripts/guide_pictures.sh [NAME...]: makes pictures of README and guide anew, all or those named. The first line of
# scripts/pictures/NAME.script says where the picture goes, how large the screen is, and, if not all of it is kept, which part.
# The script is run in the window of build/release, and what the screen shows when it has ended is the picture. Where
# "drawn" stands in place of the size there is no window: velmora-batch runs the script, which draws one picture, or two
# that go side by side, as FOLDER/1.png and FOLDER/2.png, twice as large as the page shows them.
source "$(dirname "$0")/setup.sh"

if [ "${1-}" = --inside ]; then
  folder=$2 picture=$3 part=$4
  openbox 2>/dev/null &
  build/release/bin/velmora --no-rescue --run "$folder/run.script" &
  program=$!
  for _ in $(seq 150); do
    sleep 0.2
    [ ! -e "$folder/end.svg" ] || break
  done
  # The last line is painted when the screen stays as it is for a while, however busy the machine is.
  was='' is=none
  while [ "$was" != "$is" ]; do
    sleep 2
    import -window root "$folder/screen.png"
    was=$is is=$(identify -format '%#' "$folder/screen.png")
  done
  kill "$program"
  if [ ! -e "$folder/end.svg" ]; then
    echo "$picture: the script did not come to its end" >&2
    exit 1
  fi
  # A palette keeps the guide small, which the program carries along.
  convert "$folder/screen.png" ${part:+-crop "$part" +repage} -strip +dither -colors 240 "png8:$picture"
  exit
fi

install_missing "${picture_packages[@]}"
names=("$@")
if [ $# -eq 0 ]; then
  mapfile -t names < <(cd scripts/pictures && ls -- *.script | sed 's/\.script$//')
fi
export LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb
for name in "${names[@]}"; do
  read -r _ picture size part <"scripts/pictures/$name.script"
  folder=$(mktemp -d)
  if [ "$size" = drawn ]; then
    sed "s|FOLDER|$folder|g" "scripts/pictures/$name.script" >"$folder/run.script"
    build/release/bin/velmora-batch "$folder/run.script" >"$folder/log" || { cat "$folder/log" >&2; exit 1; }
    convert "$folder"/[12].png -resize 50% -background white +smush 12 -strip +dither -colors 240 "png8:$picture"
    rm -rf "$folder"
    echo "$picture"
    continue
  fi
  cp "scripts/pictures/$name.script" "$folder/run.script"
  echo "picture $folder/end.svg" >>"$folder/run.script"
  # A home of its own: nobody's settings, and nobody's are changed.
  HOME=$folder XDG_CONFIG_HOME=$folder XDG_DATA_HOME=$folder XDG_RUNTIME_DIR=$folder \
    xvfb-run -a -s "-screen 0 ${size}x24" scripts/guide_pictures.sh --inside "$folder" "$picture" "$part" >"$folder/log" 2>&1 ||
    { cat "$folder/log" >&2; exit 1; }
  rm -rf "$folder"
  echo "$picture"
done
