# For the scripts in the folder above: the pages of the options and their controls. Source after sensors.sh.
# shellcheck disable=SC2034
ok=1 yes=6
password_message=2201
secret="correct horse"

# The pages by their place among all of them, and where each stands in the tree.
twain_page=0 scan_to_page=1 depth_page=2 language_page=4 sensor_page=5
processing_2000=6 processing_303=7 hardware_2000=8 hardware_303=9
branch=(0/0 0/1 0/2 0/3 0/4 1/0 1/1 2/1 3/0 3/1)

return_after=$(field $twain_page 1) return_available=$(field $twain_page 2) only_one=$(field $twain_page 3)
proceed=$(field $twain_page 4) log_file=$(field $twain_page 5) conflicts=$(field $twain_page 6)
trigger=$(field $twain_page 7) mode=$(field $twain_page 8)
path=$(field $scan_to_page 1) pick_path=$(field $scan_to_page 1 6)
bits_8=$(field $depth_page 1 0) bits_16=$(field $depth_page 1 1) stretch=$(field $depth_page 2)
languages=$(field $language_page 1)
prompt_sensor=$(field $sensor_page 1) sensor_name=$(field $sensor_page 2) pick_sensor=$(field $sensor_page 2 6)

options() { dialog --title "$options_title" "$@"; }
# page NUMBER: the steps that lead to it.
page() { echo "branch $options_tree ${branch[$1]} , is $options_tree ${branch[$1]}"; }
open_options() {
  dialog press $options
  options wait
}
accept() {
  options press $ok , gone
  dialog enabled $acquire_image
}

# begin: the application beside this script, whatever the source does then; start: and the source is idle.
begin() {
  clear_out
  acquire_beside --timeout 120
}
start() {
  begin
  dialog wait , enabled $acquire_image
}
leave() {
  dialog press $cancel , gone
  acquired "closed without an image" 5
}

# expect_setting NAME VALUE: as the registry has it now.
expect_setting() {
  wine_in_session "$ZYR_ARCH" "$ZYR_WINE_PREFIX" reg query 'HKLM\SOFTWARE\ZYR\TWAIN' /v "$1" </dev/null 2>/dev/null |
    tr -d '\r' | grep -qF "    $2" || e2e_fail "$1 is not $2"
}

# expect_commanded INSTANCE NAME=VALUE...: what the sensor was told last.
expect_commanded() {
  local instance=$1 wanted
  shift
  sim stat --instance "$instance"
  for wanted in "$@"; do
    grep -qE "(^| )$wanted( |\$)" "$E2E_OUT.sim" || e2e_fail "not $wanted: $(cat "$E2E_OUT.sim")"
  done
}
