#!/usr/bin/env bash
# user-guide-pictures.sh: makes docs/user-guide/pictures/*.png anew, from the module as it is, with simulated sensors.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh
. scripts/wine.sh
. scripts/module.sh
. scripts/simulator.sh
. scripts/window.sh

bin=$ZYR_BUILD/x64/bin
prefix=$ZYR_WINE/user-guide
pictures=$ZYR_ROOT/docs/user-guide/pictures
where=(x64 "$prefix" "$bin")
ok=1 image_title="Image Display" image_viewer=2132 adjust=32776 brightness=1013
adjust_title="Adjust Gamma, Brightness, Contrast"

start_prefix() {
  wine_end_session x64 "$prefix"
  wine_copy_prefix x64 "$prefix"
  install_module x64 "$prefix" "$bin"
  wine_session x64 "$prefix" 600
  module_settings x64 "$prefix" AlwaysPromptForSensor=0 CheckForConflicts=0
  install_simulator "${where[@]}"
  zyrsim "${where[@]}" plug 2000 D --instance 0001
  choose_sensor x64 "$prefix" 2000
}

dialog() { zyrdialog "${where[@]}" "$@"; }
image() { dialog --title "$image_title" "$@"; }
x() { DISPLAY=$(cat "$prefix/session/display") xdotool "$@"; }
expose() { zyrsim "${where[@]}" expose --wait 20 --instance 0001; }

# take NAME [TITLE]: few colours are enough for windows with grey pictures, and make a small file.
take() {
  local seen=$prefix/seen.png
  photograph "${where[@]}" "$seen" "${2:-ZYR TWAIN}"
  /usr/bin/convert "$seen" -dither None -colors 96 -strip -define png:compression-level=9 "$pictures/$1.png"
  [ "$(wc -c <"$pictures/$1.png")" -lt 90000 ] || die "$1.png is too large"
}

# The second picture of a grid of two by two: right of the middle, and above it.
select_second() {
  local left top
  read -r left top <<<"$(dialog place $thumbnails)"
  x mousemove --sync $((left + 80)) $((top - 80)) click 1
  dialog enabled $delete_selected
}

# The image of the first cell, in its own window: the spot that magnifies, above a shadow in the enamel, and what adjusts
# by hand. 0 shows the whole image.
look_at_image() {
  local left top
  read -r left top <<<"$(dialog place $thumbnails)"
  x mousemove 1 1 mousemove $((left - 80)) $((top - 80)) click --repeat 2 --delay 60 1
  image wait , size 920 640 , focused $image_viewer
  x key 0 mousemove 1 1
  take looking "$image_title"
  read -r left top <<<"$(image place $image_viewer)"
  x key --delay 60 Tab Tab Right Right space # the third button of the second tool bar
  x mousemove --sync $((left - 141)) $((top - 118)) mousedown 1
  take spot "$image_title"
  x mouseup 1
  image command $adjust
  dialog --title "$adjust_title" wait , size 460 560 , focused $brightness
  x key --delay 60 shift+Tab 0 Tab Tab Tab
  dialog --title "$adjust_title" focused $brightness
  x key --delay 60 Next Next
  dialog --title "$adjust_title" pause 1500 # until the preview is made
  take adjusting "$adjust_title"
  dialog --title "$adjust_title" press $cancel , gone
  image press $cancel , gone
}

# The options as they are installed: pages of each kind, and the windows that they lead to.
look_at_options() {
  local shown=(dialog --title "$options_title")
  module_settings x64 "$prefix" CheckForConflicts=1
  x mousemove 1 1
  dialog press $options
  "${shown[@]}" wait , size 740 460 , branch $options_tree 0/0 , is $options_tree 0/0
  take options-twain "$options_title"
  "${shown[@]}" branch $options_tree 0/1 , is $options_tree 0/1 , press "$(field 1 1 6)"
  dialog --title "$path_title" wait , size 360 380
  take options-path "$path_title"
  dialog --title "$path_title" press $cancel , gone
  "${shown[@]}" size 740 640 , branch $options_tree 1/1 , is $options_tree 1/1
  take options-processing "$options_title"
  "${shown[@]}" size 740 460 , branch $options_tree 3/0
  take options-password "$password_title"
  dialog --title "$password_title" type $password correct-horse , type $password_again correct-horse , press $ok , gone
  "${shown[@]}" is $options_tree 3/0
  take options-hardware "$options_title"
  "${shown[@]}" press $cancel , gone
}

take_pictures() {
  dialog size 680 520
  take idle
  dialog press $thumbnails_command
  take thumbnails Thumbnails
  dialog --title Thumbnails press $cancel
  dialog press $acquire_image , visible $exposure_panel
  take armed
  expose
  dialog visible $thumbnails , press $acquire_series , visible $exposure_panel
  expose
  dialog hidden $exposure_panel , visible $exposure_panel
  take series
  expose
  dialog hidden $exposure_panel , visible $exposure_panel , press $cancel , enabled $acquire_image
  take three-images
  select_second
  take selected
  look_at_image
  zyrsim "${where[@]}" plug 303 C --instance 0002
  dialog press $select_sensor
  take sensors "Select A Sensor"
  dialog --title "Select A Sensor" press $cancel , gone
  look_at_options
  dialog press $cancel , gone
}

make_pictures() {
  start_prefix
  mkdir -p "$pictures"
  wine_in_session x64 "$prefix" "$bin/zyracquire.exe" --source "ZYR TWAIN" --timeout 0 </dev/null >"$prefix/acquire.log" 2>&1 &
  take_pictures
  wait $! || true # closed before it gave an image
}

need_packages build
wine_select x64 || die "no Wine for x64"
trap 'wine_end_session x64 "$prefix"' EXIT
stage "third-party libraries" x64-third-party scripts/build-third-party.sh x64
stage "build" x64-build build_preset x64 zyrtwain zyracquire zyrsim zyrdialog
stage "pictures of the user guide" user-guide-pictures make_pictures
