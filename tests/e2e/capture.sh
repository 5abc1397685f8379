# From the exposure of a simulated sensor to the application, through the manager: unattended by every mechanism, and by the
# buttons of the dialog. The pictures are bit for bit what is computed for the same exposure without Windows.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
. "$(dirname "$0")/support/sensors.sh"
e2e_begin
sensors_begin

# take LABEL FAMILY SIZE DEPTH OPTION...: one capture that nobody has to press a button for.
take() {
  local label=$1 family=$2 size=$3 depth=$4
  shift 4
  clear_out
  acquire --depth "$depth" "$@" >"$E2E_OUT.txt" 2>&1 || e2e_fail "$label: status $?: $(cat "$E2E_OUT.txt")"
  expect_captured "$label" "$(picture 1)" "$family" "$size" "$depth"
  expect_empty_cache "$label"
}

echo "unattended"
e2e_settings ProceedDirectlyToScan=1 SISingleCaptureMode=1 ReturnImmediatelyAfterCap=1
plug_sensor 2000 A --expose-after 200
take "native 16" 2000 A 16 --mechanism native
take "native 8" 2000 A 8 --mechanism native
take "memory 16" 2000 A 16 --mechanism memory
take "file 8" 2000 A 8 --mechanism file --format bmp
sim unplug
plug_sensor 303 C --expose-after 200
take "303 memory 16" 303 C 16 --mechanism memory
take "303 native 8" 303 C 8 --mechanism native
sim unplug

echo "by the dialog: a single image, a series of two, all returned"
e2e_settings ProceedDirectlyToScan=0 ReturnImmediatelyAfterCap=0
plug_sensor 2000 A
clear_out
acquire_beside --depth 16 --timeout 120
dialog wait , press $acquire_image , visible $exposure_panel , disabled $return_images
sim expose --wait 20
dialog visible $thumbnails , enabled $return_images , press $acquire_series , visible $exposure_panel
sim expose --wait 20
dialog has $status_panel "Image #1" , visible $exposure_panel
sim expose --wait 20
dialog hidden $exposure_panel , visible $exposure_panel , press $cancel , enabled $acquire_image
[ "$(ls "$E2E_DRIVE_C"/ZYRTwain/*.RAW | wc -l)" -eq 3 ] || e2e_fail "after a series: $(ls "$E2E_DRIVE_C/ZYRTwain")"
dialog press $return_images
acquired "three images"
for number in 1 2 3; do expect_captured "image $number of 3" "$(picture "$number")" 2000 A 16; done
expect_empty_cache "three images"
