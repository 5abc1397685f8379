#!/usr/bin/env bash
# dialog-pictures.sh [OPTION]... [FILE.Phrases...|english|test|all]: every dialog of the module, with simulated sensors,
# photographed in each of these languages (english) into out/dialogs/LANGUAGE/, and a sheet of all of them beside that
# folder. `test` is a made-up language of long, accented texts: what is clipped or not translated stands out. `all` is
# these two and every file of resources/languages.
#
#   --dpi N        the screen's pixels an inch, 96 for its plain scale (96)
#   --screen WxH   the size of the screen (1280x900)
#   --built        takes the programs as they are, without building them
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh
. scripts/wine.sh
. scripts/module.sh
. scripts/simulator.sh
. scripts/window.sh

bin=$ZYR_BUILD/x64/bin
prefix=$ZYR_WINE/dialog-pictures
where=(x64 "$prefix" "$bin")
dpi=96 built=
export ZYR_SCREEN=${ZYR_SCREEN:-1280x900}

ok=1 yes=6 no=7
sensor_list=2008
image_group=2120 image_viewer=2132 adjust=32776
spot_magnify=5 viewer_full_screen=7 viewer_operations=10 # buttons of the viewer

languages=()
while [ $# -gt 0 ]; do
  case $1 in
    --dpi) dpi=$2; shift ;;
    --screen) ZYR_SCREEN=$2; shift ;;
    --built) built=1 ;;
    all) languages+=(english test resources/languages/*.Phrases) ;;
    english | test) languages+=("$1") ;;
    *) [ -f "$1" ] || die "no such file: $1"; languages+=("$1") ;;
  esac
  shift
done
[ ${#languages[@]} -gt 0 ] || languages=(english)

# phrase TEXT: what it is in the language that is photographed.
phrase() {
  [ -n "$phrases" ] || { echo "$1"; return; }
  awk -F '"' -v text="$1" 'NR > 1 && $0 !~ /^[ \t]*;/ && $2 == text { found = $4 }
    END { print found == "" ? text : found }' "$phrases"
}

dialog() { zyrdialog "${where[@]}" --title "$(phrase "ZYR TWAIN")" "$@"; }
# titled TITLE STEP...: another window, by its English title.
titled() {
  local title
  title=$(phrase "$1")
  shift
  zyrdialog "${where[@]}" --title "$title" "$@"
}
x() { DISPLAY=$(cat "$prefix/session/display") xdotool "$@"; }
sim() { zyrsim "${where[@]}" "$@"; }

# next_picture NAME: sets $file; pictures are numbered in the order in which a user comes by.
next_picture() {
  taken=$((taken + 1))
  file=$(printf '%s/%02d-%s.png' "$pictures" "$taken" "$1")
}

# take NAME [TITLE]: a window. take_screen NAME: the whole screen, for what has no frame or hangs out of one.
take() {
  next_picture "$1"
  photograph "${where[@]}" "$file" "$(phrase "${2:-ZYR TWAIN}")"
}
take_screen() {
  next_picture "$1"
  sleep 0.7
  /usr/bin/import -display "$(cat "$prefix/session/display")" -window root "$file"
}

settle_screen() {
  cat >"$prefix/screen.reg" <<REG
REGEDIT4

[HKEY_CURRENT_USER\\Control Panel\\Desktop]
"LogPixels"=dword:$(printf %08x "$dpi")

[HKEY_CURRENT_CONFIG\\Software\\Fonts]
"LogPixels"=dword:$(printf %08x "$dpi")

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]
"Default"="$ZYR_SCREEN"
REG
  wine_in_session x64 "$prefix" regedit /S "Z:$prefix/screen.reg" </dev/null >/dev/null 2>&1
}

start_prefix() {
  wine_end_session x64 "$prefix"
  wine_copy_prefix x64 "$prefix"
  install_module x64 "$prefix" "$bin"
  wine_session x64 "$prefix" 300
  settle_screen
  wine_end_session x64 "$prefix"
  wine_session x64 "$prefix" 3000
  install_simulator "${where[@]}"
}

# Steps of a language's tour. Each begins and ends with the capture dialog alone on the screen, and idle.

capture_pictures() {
  local again=(hidden $exposure_panel , visible $exposure_panel)
  dialog wait , enabled $acquire_image
  take capture-idle
  dialog press $thumbnails_command
  take thumbnail-grid Thumbnails
  titled Thumbnails press $cancel , gone
  dialog press $acquire_image , visible $exposure_panel
  take capture-armed
  sim expose --wait 20 --instance 0001
  dialog visible $thumbnails , press $acquire_series , visible $exposure_panel
  take capture-series
  sim expose --wait 20 --instance 0001
  dialog "${again[@]}"
  sim expose --wait 20 --instance 0001
  dialog "${again[@]}" , press $cancel , enabled $acquire_image
  take capture-stopped
  dialog size 420 380 , pause 300
  take capture-smallest
  dialog size 843 675
}

deletion_pictures() {
  local left top
  read -r left top <<<"$(dialog place $thumbnails)"
  x mousemove --sync $((left + 80)) $((top - 80)) click 1
  dialog enabled $delete_selected
  take capture-selected
  dialog press $delete_selected
  take delete-selected "Delete Selected Images"
  titled "Delete Selected Images" press $no , gone
  dialog press $delete_all
  take delete-all "Delete All Images"
  titled "Delete All Images" press $no , gone
}

sensor_pictures() {
  dialog press $select_sensor
  take sensors "Select A Sensor"
  titled "Select A Sensor" press $cancel , gone
}

# The image of the first cell, in its own window.
image_pictures() {
  local left top i
  read -r left top <<<"$(dialog place $thumbnails)"
  x mousemove 1 1 mousemove $((left - 80)) $((top - 80)) click --repeat 2 --delay 60 1
  titled "Image Display" wait , focused $image_viewer , pause 500
  take image "Image Display"
  for i in 0 1 2 3 4; do
    titled "Image Display" press $((image_group + i))
    take_screen "image-menu-$i"
    x key Escape
    titled "Image Display" wait , pause 200
  done
  viewer_pictures
  titled "Image Display" size 640 480 , pause 500
  take image-smallest "Image Display"
  titled "Image Display" size 1000 720 , pause 300 , command $adjust
  take adjust "Adjust Gamma, Brightness, Contrast"
  titled "Adjust Gamma, Brightness, Contrast" size 420 400 , pause 300
  take adjust-smallest "Adjust Gamma, Brightness, Contrast"
  titled "Adjust Gamma, Brightness, Contrast" press $cancel , gone
  titled "Image Display" press $cancel , gone
}

# A tip of the tool bars, the operations of the viewer, and the image on the whole screen.
viewer_pictures() {
  local left top
  read -r left top <<<"$(titled "Image Display" place $spot_magnify)"
  x mousemove 1 1 mousemove --sync "$left" "$top"
  take_screen viewer-tip
  x mousemove 1 1
  titled "Image Display" press $viewer_operations , pause 200
  take_screen viewer-operations
  x key --delay 100 Up Right
  take_screen viewer-spectrums
  x key --delay 100 Escape Escape
  titled "Image Display" wait , pause 200
  x mousemove 1 800 # away from its tool bars
  titled "Image Display" press $viewer_full_screen , pause 700
  take_screen full-screen
  x key Escape
  titled "Image Display" wait , pause 300
}

# Every page of the options, the dialogs that they lead to, and the two of the password: the one for a new password is
# followed by the one that asks for it.
options_pictures() {
  local page name secret="correct horse"
  dialog press $options
  for page in 0/0=twain-options 0/1=scan-to 0/2=bit-depth 0/3=twain-settings 0/4=language 1/0=sensor-selection \
    1/1=image-processing 2/1=image-processing-303; do
    titled "$options_title" branch $options_tree "${page%=*}" , is $options_tree "${page%=*}" , pause 400
    take "options-${page#*=}" "$options_title"
  done
  titled "$options_title" branch $options_tree 0/1 , press "$(field 1 1 6)"
  take select-path "$path_title"
  titled "$path_title" press $new_path
  take new-path "$new_path_title"
  titled "$new_path_title" press $cancel , gone
  titled "$path_title" press $cancel , gone
  for name in new asked; do
    [ "$name" = new ] || dialog press $options
    titled "$options_title" branch $options_tree 3/0
    take "password-$name" "$password_title"
    titled "$password_title" type $password "$secret"
    [ "$name" = asked ] || titled "$password_title" type $password_again "$secret"
    titled "$password_title" press $ok , gone
    titled "$options_title" is $options_tree 3/0 , pause 400
    [ "$name" = asked ] || titled "$options_title" press $cancel , gone
  done
  take options-hardware "$options_title"
  titled "$options_title" branch $options_tree 3/1 , is $options_tree 3/1 , pause 400
  take options-hardware-303 "$options_title"
  titled "$options_title" size 420 320 , branch $options_tree 1/1 , pause 400
  take options-smallest "$options_title"
  titled "$options_title" press $cancel , gone
}

# The sensor is pulled out while it waits, beside what was taken before; then there is no sensor at all.
failure_pictures() {
  dialog press $acquire_image , visible $exposure_panel
  sim unplug --instance 0001
  dialog enabled $acquire_image
  take capture-error
  sim unplug --instance 0002
  dialog press $select_sensor
  take no-sensor "Select A Sensor"
  titled "Select A Sensor" press $cancel , gone
}

# speak LANGUAGE: sets $phrases, the file of the language or nothing, and $language_file, where the module finds it.
speak() {
  phrases=$1 language_file=
  [ "$1" != english ] || { phrases=; return; }
  if [ "$1" = test ]; then
    phrases=$prefix/Test.Phrases
    scripts/phrases.pl test-language >"$phrases"
  fi
  scripts/phrases.pl install "$prefix/drive_c/windows/twain_64/ZYR/Languages" "$phrases"
  language_file="C:\\windows\\twain_64\\ZYR\\Languages\\$(basename "$phrases")"
}

forget_password() {
  printf 'REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\ZYR\\TWAIN]\n"HardwarePassword"=-\n' >"$prefix/forget.reg"
  wine_in_session x64 "$prefix" regedit /S "Z:$prefix/forget.reg" </dev/null >/dev/null 2>&1
}

# tour LANGUAGE: all its pictures.
tour() {
  speak "$1"
  pictures=$ZYR_ROOT/out/dialogs/$(basename "${phrases:-English}" .Phrases)
  [ "$dpi" = 96 ] || pictures+=-$dpi
  taken=0
  rm -rf "$pictures"
  mkdir -p "$pictures"
  module_settings x64 "$prefix" AlwaysPromptForSensor=0 CheckForConflicts=0 DisplayManuallyTrigger=1 \
    "LanguageFile:=$language_file"
  forget_password
  sim plug 2000 D --instance 0001
  sim plug 303 C --instance 0002
  choose_sensor x64 "$prefix" 2000
  wine_in_session x64 "$prefix" "$bin/zyracquire.exe" --source "ZYR TWAIN" --timeout 0 </dev/null \
    >"$prefix/acquire.log" 2>&1 &
  local acquiring=$!
  capture_pictures
  deletion_pictures
  sensor_pictures
  image_pictures
  options_pictures
  failure_pictures
  dialog press $delete_all
  titled "Delete All Images" press $yes , gone
  dialog press $cancel , gone
  wait "$acquiring" || true # closed before it gave an image
  sheet
}

# All pictures of a language on one page, with their names.
sheet() {
  /usr/bin/montage -font Liberation-Sans -pointsize 15 -background '#d8d8d8' -label '%t' "$pictures"/*.png \
    -tile 3x -geometry '640x450>+12+12' "$pictures.png"
}

make_pictures() {
  local language
  start_prefix
  for language in "${languages[@]}"; do tour "$language"; done
}

wine_select x64 || die "no Wine for x64"
trap 'wine_end_session x64 "$prefix"' EXIT
if [ -z "$built" ]; then
  need_packages build
  stage "third-party libraries" x64-third-party scripts/build-third-party.sh x64
  stage "build" x64-build build_preset x64 zyrtwain zyracquire zyrsim zyrdialog
fi
stage "pictures of ${#languages[@]} languages" dialog-pictures make_pictures
