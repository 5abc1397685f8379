# An image that is opened from the thumbnails, edited in its dialog and returned: by the commands of its menus, by keys and
# by its list. What it has become is held against what ImageMagick makes of the image as it was.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
. "$(dirname "$0")/support/sensors.sh"
e2e_begin
e2e_settings 'ScanToPath=C:\ZYRTwain' AlwaysPromptForSensor=0 CheckForConflicts=0 Logging=0

undo=32772 redo=32773 copy=32775 adjust=32776 flip_vertically=32778 flip_horizontally=32779 rotate_90=32781
rotate_180=32782 rotate_270=32783 original=32793 invert=32794
filters='32785 32786 32787 32788 32789 32790 32791 32792' # equalize to noise reduction
image_title="Image Display" gamma_title="Adjust Gamma, Brightness, Contrast"
ok=1 image_status=2133 brightness_value=2142

x() { DISPLAY=$(cat "$ZYR_WINE_PREFIX/session/display") xdotool "$@"; }
image() { dialog --title "$image_title" "$@"; }

# Twice as high as wide, nearly: what is turned cannot be mistaken.
make_images "$E2E_DRIVE_C/images" 1 --size 211x401
whole=$E2E_DRIVE_C/images/expected-1-16.pgm

# open_image: by a double click into the first cell of the grid.
open_image() {
  local left top
  fill_cache "$E2E_DRIVE_C/images"
  clear_out
  acquire_beside --depth 16 --timeout 120
  dialog wait , has $thumbnails "Item 1 of 1" , place $thumbnails
  read -r left top <"$E2E_OUT.dialog"
  x mousemove 1 1 mousemove $((left - 80)) $((top - 80)) click --repeat 2 --delay 60 1
  image wait , has $image_status "211 pixels x 401 pixels"
}

# return_image LABEL: the image dialog is closed; what it has left goes to the application, into $returned.
return_image() {
  image gone
  dialog enabled $return_images , press $return_images
  acquired "$1"
  returned=$(picture 1)
  expect_empty_cache "$1"
}

# edit LABEL COMMAND...: gives the commands, takes OK and returns the image.
edit() {
  local label=$1 command
  shift
  open_image
  for command in "$@"; do image command "$command"; done
  image press $ok
  return_image "$label"
}

# expect LABEL OPTION...: ImageMagick's options, which make of the image what it should be now.
expect() {
  local label=$1
  shift
  /usr/bin/convert "$whole" "$@" "$E2E_OUT.expected.pgm"
  expect_picture "$label" "$returned" "$E2E_OUT.expected.pgm"
}

echo "turned and mirrored"
edit "flip vertically" $flip_vertically
expect "flip vertically" -flip
edit "flip horizontally" $flip_horizontally
expect "flip horizontally" -flop
edit "rotate 90" $rotate_90
expect "rotate 90" -rotate 90
edit "rotate 180" $rotate_180
expect "rotate 180" -rotate 180
edit "rotate 270" $rotate_270
expect "rotate 270" -rotate 270

echo "undone and done again"
edit "undo, redo" $flip_vertically $rotate_90 $undo $undo $redo
expect "undo, redo" -flip
# shellcheck disable=SC2086  # one command a word
edit "every filter, undone" $filters $invert $undo $undo $undo $undo $undo $undo $undo $undo $undo
expect "every filter, undone"
edit "original" $invert $rotate_90 $copy $original
expect "original"
edit "inverted twice" $invert $invert
expect "inverted twice"

echo "changed"
for command in $filters $invert; do
  edit "command $command" "$command"
  [ "$(different_pixels "$returned" "$whole")" -gt 5000 ] || e2e_fail "command $command: as it was"
done

echo "by keys and by hand"
open_image
x key --delay 30 alt+f
image pause 300
x key --delay 60 Down Down Return
image has $image_status "211 pixels" , command $adjust
dialog --title "$gamma_title" wait
x key --delay 30 Right Right Right
dialog --title "$gamma_title" has $brightness_value 3
x key Escape
dialog --title "$gamma_title" gone
image pause 200
x key Return
return_image "keys"
expect "keys" -flop

open_image
image command $invert
x key Escape
return_image "cancelled"
expect "cancelled"
