# What goes wrong during a capture, in single and series mode: the dialog says so and ends idle, what was taken stays, and
# the next capture is as good as ever. A scan folder that vanishes costs nothing.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
. "$(dirname "$0")/support/sensors.sh"
e2e_begin
sensors_begin
e2e_settings DisplayManuallyTrigger=1
sed -i 's/capture_timeout="[0-9]*"/capture_timeout="6000"/' "$E2E_TWAIN/Settings.XML"
cache=$E2E_DRIVE_C/ZYRTwain
log=$E2E_DRIVE_C/ZYRTWAIN.Log

files() { find "$cache" -name '*.RAW' 2>/dev/null | wc -l; }

expect_files() { # LABEL COUNT
  [ "$(files)" -eq "$2" ] || e2e_fail "$1: $(files) images on disk, not $2"
}

expect_log() { # LABEL WORDS
  grep -qF -- "$2" "$log" || e2e_fail "$1: not in the log: $2"
  : >"$log"
}

# Idle as after any capture: everything can be pressed, and nothing of a series is left.
idle=(enabled $acquire_image , enabled $acquire_series , enabled $select_sensor , hidden $exposure_panel , hidden $manual_trigger)

sensor=(2000 A --integration 50 --dark-integration 50 --timeout 2000)
plug_sensor "${sensor[@]}"
clear_out
acquire_beside --depth 16 --timeout 200
dialog wait , enabled $acquire_image , hidden $manual_trigger

arm() { dialog press "$1" , visible $exposure_panel; }

# shot LABEL: a single capture as it should be.
taken=0
shot() {
  arm $acquire_image
  sim expose --wait 20
  dialog visible $thumbnails , "${idle[@]}"
  expect_files "$1" $((taken += 1))
}

# failed LABEL: the capture has ended without an image, and said so.
canceled="CAPTURE STATUS MESSAGE: Image Acquisition Error -> Image acquisition canceled"
failed() {
  dialog "${idle[@]}" , has $status_panel "Image acquisition canceled"
  [ "$taken" -eq 0 ] || dialog visible $thumbnails
  expect_files "$1" "$taken"
  expect_log "$1" "$canceled"
}

echo "the user changes his mind"
arm $acquire_image
dialog visible $manual_trigger , press $cancel
failed "cancelled"
rm -rf "$cache"
shot "after a cancel"

echo "the sensor is pulled out while it waits, in a series with one image"
arm $acquire_series
sim expose --wait 20
dialog hidden $exposure_panel , visible $exposure_panel
expect_files "the first of a series" $((taken += 1))
sim unplug
dialog enabled $acquire_image
failed "pulled out"
sim plug "${sensor[@]}" --instance 0001
shot "plugged in again"

echo "its status cannot be read"
arm $acquire_image
sim fault error --value 31
failed "no status"
shot "after an error"

echo "nothing is exposed, in a series"
: >"$log"
arm $acquire_series
timed_out="The hardware timed-out waiting for x-ray exposure or was unplugged. (result = 8AAA2016)"
dialog enabled $acquire_image
grep -qF "$timed_out" "$log" || e2e_fail "no exposure: not in the log: $timed_out"
failed "no exposure"

echo "silence, an error and the plug while the frame comes: the rest of the image is there"
damaged=
for fault in silence "error --value 31" unplug; do
  arm $acquire_image
  # shellcheck disable=SC2086  # words of a command line
  sim fault $fault --at 60
  sim expose --wait 20
  dialog visible $thumbnails , "${idle[@]}"
  expect_files "$fault" $((taken += 1))
  damaged+=" $taken "
done
sim plug "${sensor[@]}" --instance 0001
shot "after all that"

echo "a trigger by hand instead of X-rays"
arm $acquire_image
dialog press $manual_trigger , visible $thumbnails , "${idle[@]}"
expect_files "triggered by hand" $((taken += 1))
damaged+=" $taken "

echo "the folder of the images vanishes, and none can be made"
mv "$cache" "$cache.away"
touch "$cache"
for number in 1 2; do
  : >"$log"
  arm $acquire_image
  sim expose --wait 20
  dialog visible $thumbnails , "${idle[@]}"
  expect_log "image $number without a folder" \
    'Unable To Save Image! -> The image could not be saved to the folder C:\ZYRTwain.'
  taken=$((taken + 1))
done
rm "$cache"
mv "$cache.away" "$cache"
shot "with the folder"

echo "all are returned"
dialog press $return_images
acquired "after all faults"
expect_empty_cache "after all faults"
for ((number = 1; number <= taken; number++)); do
  if [[ $damaged == *" $number "* ]]; then
    [ "$(crc_of "$(picture "$number")" 16)" != "$(expected_crc 2000 A 16)" ] || e2e_fail "image $number is not damaged"
  else
    expect_captured "image $number of $taken" "$(picture "$number")" 2000 A 16
  fi
done
