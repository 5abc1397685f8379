# The Help button: it opens the help file, which holds all chapters of the user guide and their pictures; where there is
# no such file, a box tells so.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/sensors.sh"
e2e_begin
e2e_settings CheckForConflicts=0

chapters=$ZYR_SOURCE_DIR/docs/user-guide
installed=$E2E_TWAIN/ZYR/ZYRTWAIN.CHM
x() { DISPLAY=$(cat "$ZYR_WINE_PREFIX/session/display") xdotool "$@"; }
help_window() { x search --onlyvisible --name '^ZYR TWAIN Help$' 2>/dev/null | grep -q .; }

wait_until() { # LABEL COMMAND...
  local label=$1 tries=0
  shift
  until "$@"; do
    [ $((tries += 1)) -lt 150 ] || e2e_fail "$label"
    sleep 0.1
  done
}
no_help_window() { ! help_window; }

echo "the file"
mkdir "$E2E_OUT/chm"
(cd "$E2E_OUT/chm" && chmls extractall "$installed" .) >"$E2E_OUT.chm" 2>&1 ||
  e2e_fail "not to be read: $(cat "$E2E_OUT.chm")"
for chapter in "$chapters"/*.md; do
  page=$E2E_OUT/chm/$(basename "$chapter" .md).html
  heading=$(sed -n 's/^# //p' "$chapter")
  grep -qF "<title>$heading</title>" "$page" || e2e_fail "no chapter '$heading'"
  for picture in $(sed -n 's/.*](\(pictures\/[^)]*\)).*/\1/p' "$chapter"); do
    cmp -s "$chapters/$picture" "$E2E_OUT/chm/$picture" || e2e_fail "$picture is not in it"
  done
  grep -qF 'value="'"$heading"'"' "$E2E_OUT/chm/help.hhc" || e2e_fail "'$heading' is not among the contents"
done
for word in 'Hardware Error' 'Invalid Privileges!' 'Delete Selected' 'Integration Time' 'Unable To Open Help'; do
  grep -qF 'value="'"$word"'"' "$E2E_OUT/chm/help.hhk" || e2e_fail "'$word' is not in the index"
done

echo "the button"
acquire_beside --timeout 120
dialog wait , press $help
wait_until "no help window" help_window
wine_in_session "$ZYR_ARCH" "$ZYR_WINE_PREFIX" taskkill /IM hh.exe </dev/null >/dev/null 2>&1 # asks it to close
wait_until "the help window stays" no_help_window

echo "without the file"
rm "$installed"
dialog press $help
dialog --title "Unable To Open Help" press 1 , gone
dialog press $cancel , gone
acquired "closed without an image" 5
