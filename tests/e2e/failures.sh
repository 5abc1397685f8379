# What goes wrong is said in words and by the exit status, and costs no image.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
e2e_begin
e2e_settings ReturnImmediatelyIfAvailable=1 Logging=0 'ScanToPath=C:\ZYRTwain'
cache=$E2E_DRIVE_C/ZYRTwain
make_images "$E2E_DRIVE_C/images" 1 --size 100x150

# expect_failure STATUS WORDS OPTION...: zyracquire ends with that status and says these words.
expect_failure() {
  local expected=$1 words=$2 status=0
  shift 2
  e2e_run zyracquire --timeout 3 --unattended "$@" >"$E2E_OUT.txt" 2>&1 || status=$?
  [ "$status" -eq "$expected" ] || e2e_fail "$*: status $status: $(cat "$E2E_OUT.txt")"
  grep -qF -- "$words" "$E2E_OUT.txt" || e2e_fail "$*: $(cat "$E2E_OUT.txt")"
}

fill_cache "$E2E_DRIVE_C/images"
expect_failure 2 "There is no option '--dept'." --dept 8
expect_failure 2 'There is no folder C:\missing.' --source zyr --out 'C:\missing'
expect_failure 3 "there is no source whose name holds 'nobody'. There is: ZYR TWAIN" --source nobody
expect_failure 3 'C:\missing.dll cannot be loaded' --dsm 'C:\missing.dll'

# The source's words in its message box, and its condition code.
words='TWCC_BADVALUE (10): Bad value error.'
expect_failure 1 "DG_CONTROL / DAT_SETUPFILEXFER / MSG_SET failed: $words" \
  --source zyr --mechanism file --out 'C:\missing'
grep -qF "The source shows a message, 'ZYR TWAIN': Unable to create file <<DAT_SETUPFILEXFER>>  Bad value error." \
  "$E2E_OUT.txt" || e2e_fail "the source's message: $(cat "$E2E_OUT.txt")"
# A strip with no room for a row.
expect_failure 1 'TWCC_OPERATIONERROR (5): An operation error just occurred.' \
  --source zyr --mechanism memory --depth 16 --buffer 100 --out "$E2E_OUT_WINDOWS"
[ -f "$cache/CACHEDRAW.RAW" ] || e2e_fail "a failed transfer took the image away"

# A file that is torn stays where it is and is nobody's image.
head -c 20000 "$cache/CACHEDRAW.RAW" >"$cache/CACHEDRAW_7.RAW"
echo 'no image' >"$cache/CACHEDRAW_8.RAW"
e2e_run zyracquire --source zyr --depth 16 --out "$E2E_OUT_WINDOWS" --timeout 30 --unattended >"$E2E_OUT.txt" ||
  e2e_fail "with torn files: status $?: $(cat "$E2E_OUT.txt")"
expect_picture "with torn files" "$(picture 1)" "$E2E_DRIVE_C/images/expected-1-16.pgm"
[ "$(ls "$cache")" = $'CACHEDRAW_7.RAW\nCACHEDRAW_8.RAW' ] || e2e_fail "torn files: $(ls "$cache")"

# Nothing to return: the source's window waits for its user, who does not come.
expect_failure 4 'no image came within 3 seconds' --source zyr --out "$E2E_OUT_WINDOWS"

# A message box of the source, and nobody told to answer it: the program ends all the same, and the image stays.
fill_cache "$E2E_DRIVE_C/images"
status=0
e2e_run zyracquire --source zyr --mechanism file --out 'C:\missing' --timeout 1 >"$E2E_OUT.txt" 2>&1 || status=$?
[ "$status" -eq 4 ] || e2e_fail "nobody answers: status $status: $(cat "$E2E_OUT.txt")"
grep -qF 'the source has not answered for 1 seconds' "$E2E_OUT.txt" || e2e_fail "nobody answers: $(cat "$E2E_OUT.txt")"
[ -f "$cache/CACHEDRAW.RAW" ] || e2e_fail "nobody answers: the image is gone"
