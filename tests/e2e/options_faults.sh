# Options that cannot be kept or used: no right to write the settings, a language file and a folder that are gone. The
# user is told, the options stay open for another try, and what was set before stays.
# shellcheck disable=SC2046  # the steps that `page` gives are words
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
. "$(dirname "$0")/support/sensors.sh"
. "$(dirname "$0")/support/options.sh"
e2e_begin
e2e_settings 'ScanToPath=C:\ZYRTwain' CheckForConflicts=0 ReturnImmediatelyAfterCap=0 AlwaysPromptForSensor=0

no=7 message=65535 # the text of a box
writing() { e2e_run rude_application settings "$1" || e2e_fail "the rights stay as they are"; }
# told TITLE WORDS: a box says so, and is confirmed.
told() { dialog --title "$1" has $message "$2" , press $ok , gone; }

echo "no right to write"
start
writing deny
dialog press $options
dialog --title "Invalid Privileges!" has $message "does not have privileges" , press $no , gone
dialog enabled $options , press $options
dialog --title "Invalid Privileges!" press $yes , gone
options wait , check $return_after , choose $mode 0 , press $ok
told "Error Saving Settings" "The TWAIN settings could not be saved."
options branch $options_tree 3/0
told "$password_title" "none has been set yet"
options is $options_tree 0/0 , $(page $sensor_page) , check $prompt_sensor , press $ok
dialog --title "Error Saving Settings" has $message "The TWAIN settings could not be saved." , press $ok , \
  has $message "The settings could not be saved." , has $message "Unable to write or create the value" , press $ok , gone
options is $options_tree 0/0 , is $return_after 1 , press $cancel , gone
dialog press $options
dialog --title "Invalid Privileges!" press $yes , gone
options wait , is $return_after 0 , is $mode 1 , $(page $sensor_page) , is $prompt_sensor 0 , press $cancel , gone
expect_setting ReturnImmediatelyAfterCap 0x0

echo "with the right again"
writing allow
open_options
options check $return_after
accept
expect_setting ReturnImmediatelyAfterCap 0x1

echo "a language file that goes while it is chosen"
rm -f "$E2E_TWAIN"/ZYR/Languages/*
printf 'Gascon\r\n"Acquire Image" = "Gahar"\r\n' >"$E2E_TWAIN/ZYR/Languages/Gascon.Phrases"
open_options
options $(page $language_page) , choose $languages 1
rm "$E2E_TWAIN/ZYR/Languages/Gascon.Phrases"
options $(page $depth_page) , press $ok
told "Language" "Gascon.Phrases' could not be read"
options is $options_tree "${branch[$language_page]}" , choose $languages 0
accept
leave

echo "a folder on a drive that is gone"
e2e_settings 'ScanToPath=Q:\Scans'
start
open_options
options $(page $scan_to_page) , is $path 'Q:\Scans' , $(page $depth_page) , press $ok
told "Invalid Drive/Path Specified" "No images can be saved in the directory 'Q:\\Scans'."
options is $options_tree "${branch[$scan_to_page]}" , press $pick_path
dialog --title "$path_title" branch $path_tree 0 , is $path_tree 0 , press $new_path
# The box has the title of the dialog, which comes up again behind it.
dialog --title "$new_path_title" type $new_path_name "nul" , press $ok , has $message "is reserved" , press $ok , \
  type $new_path_name "Scans" , press $ok , gone
dialog --title "$path_title" press $ok , gone
options is $path 'C:\Scans'
accept
[ -d "$E2E_DRIVE_C/Scans" ] || e2e_fail "no new folder"
leave
