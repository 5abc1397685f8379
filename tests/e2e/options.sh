# Every setting is changed on its page of the options, shows in the next capture or transfer what it does, and stands on
# its page in the next process. Of what is delivered the CRC is known from computing it without Windows.
# shellcheck disable=SC2046,SC2054,SC2206,SC2207  # the steps that `page` gives are words
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
. "$(dirname "$0")/support/sensors.sh"
. "$(dirname "$0")/support/options.sh"
e2e_begin
sensors_begin
sensor=(--integration 50 --dark-integration 50)
plug_sensor 2000 A "${sensor[@]}"
log=$E2E_DRIVE_C/ZYRTWAIN.Log
cache=$E2E_DRIVE_C/ZYRTwain
select_title="Select A Sensor" sensor_list=2008 row_303=0 row_2000=1

# armed: by a button or by itself; exposed INSTANCE: and the exposure that it waits for.
armed() { dialog wait , visible $exposure_panel; }
exposed() {
  armed
  sim expose --wait 20 --instance "${1:-0001}"
}

# returned LABEL SENSOR DEPTH: the application has this image, and no other.
returned() {
  acquired "$1"
  [ "$(find "$E2E_OUT" -type f | wc -l)" -eq 1 ] || e2e_fail "$1: returned $(ls "$E2E_OUT")"
  expect_captured "$1" "$(picture 1)" "${2%%-*}" "${2#*-}" "$3"
}

# processing set|see PAGE BRIGHTNESS CONTRAST GAMMA NOISE SHARPENING EDGES SMOOTHING: what a page of image processing is
# set to; a filter is off, or SIZE/FACTOR.
processing() {
  local slide=is choose=is page=$2 control=5 filter
  [ "$1" = see ] || slide=slide choose=choose
  local steps=($(page "$page") , $slide $(field "$page" 1) "$3" , $slide $(field "$page" 2) "$4" ,
    $slide $(field "$page" 3) "$5" , $choose $(field "$page" 4) "$6")
  local box mask
  for filter in "${@:7}"; do
    box=$(field "$page" $control) mask=$(field "$page" $((control + 1)))
    control=$((control + 2))
    case $1-$filter in
      see-off) steps+=(, is "$box" 0) ;;
      set-off) steps+=(, uncheck "$box") ;;
      see-*) steps+=(, is "$box" 1) ;;
      *) steps+=(, check "$box") ;;
    esac
    [ "$filter" = off ] || steps+=(, $choose "$mask/1" "${filter%/*}" , $slide "$mask/2" "${filter#*/}")
  done
  options "${steps[@]}"
}
# As in the test that computes what is delivered.
other_2000=(20 30 120 1 0/30 1/6 2/20)
other_303=(-15 12 90 3 1/25 off off)

echo "returned at once, with 8 bits, processed otherwise; a button to trigger"
start
open_options
options $(page $twain_page) , check $return_after , check $trigger , $(page $depth_page) , check $bits_8
processing set $processing_2000 "${other_2000[@]}"
processing set $processing_303 "${other_303[@]}"
accept
dialog press $acquire_image
armed
dialog visible $manual_trigger
exposed
returned "at once" 2000-A-other 8
expect_empty_cache "at once"

echo "back to the defaults, to 16 bits, one image of several"
start
open_options
options $(page $twain_page) , is $return_after 1 , is $trigger 1 , $(page $depth_page) , is $bits_8 1
processing see $processing_303 "${other_303[@]}"
processing see $processing_2000 "${other_2000[@]}"
options press "$(field $processing_2000 11)"
dialog --title "Reset To Defaults" press $yes , gone
processing see $processing_2000 0 10 70 2 off off off
options $(page $twain_page) , uncheck $return_after , uncheck $trigger , check $return_available , \
  check $only_one , $(page $depth_page) , check $bits_16
accept
dialog press $acquire_series
exposed
dialog has $status_panel "Image #1"
dialog visible $exposure_panel , hidden $manual_trigger
exposed
dialog hidden $exposure_panel , visible $exposure_panel , press $cancel , enabled $acquire_image , \
  press $return_images
returned "one of two" 2000-A 16
[ "$(find "$cache" -name '*.RAW' | wc -l)" -eq 1 ] || e2e_fail "one of two: left: $(ls "$cache")"

echo "the other one is returned as soon as the source is there"
clear_out
acquire_beside --timeout 120
returned "available" 2000-A 16
expect_empty_cache "available"

echo "straight to a single scan, without stretching"
start
open_options
options $(page $twain_page) , is $return_after 0 , is $trigger 0 , is $return_available 1 , is $only_one 1 , \
  uncheck $return_available , uncheck $only_one , check $proceed , choose $mode 0 , \
  $(page $depth_page) , is $bits_16 1 , is $stretch 1 , uncheck $stretch
accept
leave
begin
exposed
dialog visible $thumbnails , hidden $exposure_panel , enabled $acquire_image
open_options
options $(page $twain_page) , is $return_available 0 , is $only_one 0 , is $proceed 1 , is $mode 0 , \
  check $return_after , choose $mode 1
accept
dialog press $return_images
returned "not stretched" 2000-A-unstretched 16

echo "straight to a series, which goes on after each image; stretched at once"
begin
exposed
dialog has $status_panel "Image #1"
dialog visible $exposure_panel , press $cancel , enabled $acquire_image

echo "no log, a check for conflicts, a question for the sensor, another language"
rm -f "$E2E_TWAIN"/ZYR/Languages/*
printf '%s\r\n' Gascon '"Digital X-ray Options" = "Causidas"' "\"Acquire Image\" = \"Gahar l'imatge\"" \
  >"$E2E_TWAIN/ZYR/Languages/Gascon.Phrases"
open_options
options $(page $twain_page) , is $return_after 1 , is $mode 1 , uncheck $proceed , uncheck $return_after , \
  is $log_file 1 , uncheck $log_file , is $conflicts 0 , check $conflicts , $(page $sensor_page) , \
  is $prompt_sensor 0 , check $prompt_sensor , $(page $depth_page) , is $stretch 0 , check $stretch , \
  $(page $language_page) , is $languages 0 , choose $languages 1
accept
dialog press $return_images
returned "continuous" 2000-A 16
expect_setting DisplayConflictsMsg 0x1
: >"$log"
sim plug 303 C "${sensor[@]}" --instance 0002
mkdir "$E2E_DRIVE_C/application"
cp "$ZYR_BUILD_DIR/bin/zyracquire.exe" "$E2E_TWAIN/Settings.XML" "$E2E_DRIVE_C/application/"
acquire_program=$E2E_DRIVE_C/application/zyracquire.exe
clear_out
acquire_beside --timeout 120
dialog --title "WARNING! Possible Conflicting Files" press $ok , gone
dialog has $acquire_image "imatge" , press $options

echo "another folder, which stays while there are images in it"
english_title=$options_title options_title=Causidas
options wait , $(page $language_page) , is $languages 1 , choose $languages 0 , $(page $scan_to_page) , \
  press $pick_path
# Drive C is the first of the tree.
dialog --title "$path_title" branch $path_tree 0 , is $path_tree 0 , press $new_path
dialog --title "$new_path_title" type $new_path_name "Elsewhere" , press $ok , gone
dialog --title "$path_title" press $ok , gone
options is $path 'C:\Elsewhere'
accept
options_title=$english_title
dialog press $acquire_image
dialog --title "$select_title" enabled $sensor_list , choose $sensor_list $row_2000 , press $ok , gone
exposed
dialog visible $thumbnails , hidden $exposure_panel
[ "$(find "$E2E_DRIVE_C/Elsewhere" -name '*.RAW' | wc -l)" -eq 1 ] || e2e_fail "not in the new folder"
open_options
options $(page $scan_to_page) , press $pick_path
dialog --title "$path_title" branch $path_tree 0 , is $path_tree 0 , press $ok , gone
options is $path 'C:\' , $(page $depth_page) , press $ok
dialog --title "Cannot Change Cache Directory" press $ok , gone
options is $options_tree "${branch[$scan_to_page]}" , press $cancel , gone
dialog press $return_images
returned "elsewhere" 2000-A 16
[ ! -s "$log" ] || e2e_fail "a log all the same"

echo "the other sensor and family"
clear_out
acquire_beside --timeout 120
dialog --title "WARNING! Possible Conflicting Files" press $ok , gone
dialog has $acquire_image "Acquire Image"
open_options
options $(page $twain_page) , is $proceed 0 , is $return_after 0 , is $log_file 0 , check $log_file , \
  is $conflicts 1 , uncheck $conflicts , $(page $scan_to_page) , is $path 'C:\Elsewhere' , \
  $(page $language_page) , is $languages 0 , $(page $sensor_page) , is $prompt_sensor 1 , \
  uncheck $prompt_sensor , has $sensor_name 2000 , press $pick_sensor
dialog --title "$select_title" enabled $sensor_list , choose $sensor_list $row_303 , press $ok , gone
options has $sensor_name 303
accept
dialog press $acquire_image
exposed 0002
dialog visible $thumbnails , hidden $exposure_panel , press $return_images
returned "another sensor" 303-C-other 16
[ ! -s "$log" ] || e2e_fail "a log too early"

echo "the hardware, behind its password"
sim unplug --instance 0001
sim plug 2000 D "${sensor[@]}" --instance 0001
start
[ -s "$log" ] || e2e_fail "no log"
open_options
options $(page $twain_page) , is $log_file 1 , is $conflicts 0 , $(page $sensor_page) , is $prompt_sensor 0 , \
  has $sensor_name 303 , press $pick_sensor
dialog --title "$select_title" enabled $sensor_list , choose $sensor_list $row_2000 , press $ok , gone
options branch $options_tree 3/0
dialog --title "$password_title" type $password "$secret" , type $password_again "$secret" , press $ok , gone
options $(page $hardware_2000) , is "$(field $hardware_2000 1)" 3 , choose "$(field $hardware_2000 1)" 4 , \
  type "$(field $hardware_2000 2)" 200 , type "$(field $hardware_2000 3)" 450 , check "$(field $hardware_2000 4)" , \
  check "$(field $hardware_2000 5)" , $(page $hardware_303) , choose "$(field $hardware_303 1)" 2 , \
  type "$(field $hardware_303 2)" 256 , type "$(field $hardware_303 3)" 199 , disabled "$(field $hardware_303 4)" , \
  disabled "$(field $hardware_303 5)"
accept
began=$(date +%s%N)
dialog press $acquire_image
armed
[ $(($(date +%s%N) - began)) -gt 3000000000 ] || e2e_fail "no extended flush"
expect_commanded 0001 threshold=200 sensitivity=0x50 integration=450
exposed
dialog visible $thumbnails , hidden $exposure_panel , press $return_images
returned "binned" 2000-D-binned 16

start
open_options
options branch $options_tree 3/0
dialog --title "$password_title" type $password "wrong one" , press $ok , has $password_message "wrong" , \
  enabled $ok , \
  type $password "$secret" , press $ok , gone
options $(page $hardware_2000) , is "$(field $hardware_2000 1)" 4 , is "$(field $hardware_2000 2)" 200 , \
  is "$(field $hardware_2000 3)" 450 , is "$(field $hardware_2000 4)" 1 , is "$(field $hardware_2000 5)" 1 , \
  $(page $hardware_303) , is "$(field $hardware_303 1)" 2 , is "$(field $hardware_303 2)" 8 , \
  is "$(field $hardware_303 3)" 300 , $(page $sensor_page) , has $sensor_name 2000 , press $pick_sensor
dialog --title "$select_title" enabled $sensor_list , choose $sensor_list $row_303 , press $ok , gone
accept
dialog press $acquire_image
armed
expect_commanded 0002 threshold=8 sensitivity=0x30 integration=300
dialog press $cancel , enabled $acquire_image
leave
