# The dialog by keys alone, and by the mouse alone: real events, by way of the X server. Each takes a single image and a
# series of two, stops a capture, deletes one of the three and returns the others.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
. "$(dirname "$0")/support/sensors.sh"
e2e_begin
sensors_begin
plug_sensor 2000 A

sensor_list=2008 yes=6 no=7
x() { DISPLAY=$(cat "$ZYR_WINE_PREFIX/session/display") xdotool "$@"; }
keys() { x key --delay 30 "$@"; }

# walk KEY CONTROL...: the keyboard goes from control to control.
walk() {
  local key=$1 control
  shift
  for control in "$@"; do
    keys "$key"
    dialog focused "$control"
  done
}

# pointer CONTROL [TITLE]: to the middle of a control that can be used.
pointer() {
  dialog --title "${2:-ZYR TWAIN}" enabled "$1" , place "$1"
  # shellcheck disable=SC2046  # two words, x and y
  x mousemove --sync $(cat "$E2E_OUT.dialog")
}

click() { # CONTROL [TITLE]
  pointer "$@"
  x click 1
}

expose() {
  dialog visible $exposure_panel
  sim expose --wait 20
}

expect_files() { # LABEL COUNT
  local found
  found=$(find "$E2E_DRIVE_C/ZYRTwain" -name '*.RAW' | wc -l)
  [ "$found" -eq "$2" ] || e2e_fail "$1: $found images in the cache"
}

expect_returned() { # LABEL
  local number
  acquired "$1"
  for number in 1 2; do expect_captured "$1: image $number of 2" "$(picture "$number")" 2000 A 16; done
  [ "$(find "$E2E_OUT" -type f | wc -l)" -eq 2 ] || e2e_fail "$1: returned $(ls "$E2E_OUT")"
  expect_empty_cache "$1"
}

echo "keys"
acquire_beside --depth 16 --timeout 120
dialog wait , focused $acquire_image
walk Tab $acquire_series $select_sensor $options $thumbnails_command $help $cancel $status_panel $acquire_image
walk shift+Tab $status_panel $cancel

keys alt+s
dialog --title "Select A Sensor" focused $sensor_list
keys Return
dialog --title "Select A Sensor" gone
keys alt+t
dialog --title "Thumbnails" focused $rows
keys 3 Tab
dialog --title "Thumbnails" has $rows 3 , focused $columns
keys 1 Return
dialog --title "Thumbnails" gone
dialog focused $thumbnails_command

walk shift+Tab $options
keys space
dialog --title "$options_title" wait
keys Down Tab Escape
dialog --title "$options_title" gone
walk shift+Tab $select_sensor $acquire_series $acquire_image
keys space
dialog visible $exposure_panel
keys Escape
dialog has $status_panel "Acquire New Image" , enabled $acquire_image , focused $acquire_image
keys alt+a
expose
dialog has $thumbnails "Item 1 of 1" , enabled $acquire_image
keys alt+i
expose
dialog has $thumbnails "Items 1 through 2 of 2"
expose
dialog has $thumbnails "Items 1 through 3 of 3" , visible $exposure_panel
keys Escape
dialog enabled $acquire_image
expect_files "keys, series" 3

dialog focused $acquire_series
walk shift+Tab $acquire_image $thumbnails
keys Down space
dialog enabled $delete_selected
keys alt+d
dialog --title "Delete Selected Images" focused $no
keys Return
dialog --title "Delete Selected Images" gone
dialog focused $delete_selected
expect_files "keys, not deleted" 3
keys alt+d
dialog --title "Delete Selected Images" focused $no
keys Left space
dialog has $thumbnails "Items 1 through 2 of 2" , disabled $delete_selected , focused $thumbnails
walk shift+Tab $cancel $return_images
keys Return
expect_returned "keys"

echo "mouse"
e2e_settings ThumbnailRows=1 ThumbnailCols=1
clear_out
acquire_beside --depth 16 --timeout 120
dialog wait
click $select_sensor
click $return_images "Select A Sensor"
click $thumbnails_command
click $cancel "Thumbnails"
click $acquire_image
dialog visible $exposure_panel
click $cancel
click $acquire_image
expose
dialog has $thumbnails "Item 1 of 1"
click $acquire_series
expose
dialog has $thumbnails "Item 2 of 2"
expose
dialog has $thumbnails "Item 3 of 3" , visible $exposure_panel
click $cancel
dialog enabled $acquire_image
expect_files "mouse, series" 3

pointer $thumbnails
x click 4
dialog has $thumbnails "Item 2 of 3"
x click 1
click $delete_selected
click $no "Delete Selected Images"
dialog --title "Delete Selected Images" gone
expect_files "mouse, not deleted" 3
click $delete_selected
click $yes "Delete Selected Images"
dialog has $thumbnails "Item 2 of 2" , disabled $delete_selected
click $return_images
expect_returned "mouse"
