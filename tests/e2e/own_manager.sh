# A program that ships a manager of its own beside itself: the source speaks to that one and not to the system's, and
# wakes the program's message loop for it.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
e2e_begin
e2e_settings ReturnImmediatelyIfAvailable=1 Logging=0 'ScanToPath=C:\ZYRTwain'

make_images "$E2E_DRIVE_C/images" 2 --size 303d
fill_cache "$E2E_DRIVE_C/images"
program=$E2E_DRIVE_C/program
mkdir "$program"
cp "$ZYR_BUILD_DIR/bin/zyracquire.exe" "$ZYR_BUILD_DIR/bin/fake_dsm/TWAINDSM.dll" "$program/"

e2e_run "$program/zyracquire.exe" --source zyr --out "$E2E_OUT_WINDOWS" --depth 16 --timeout 30 --unattended --trace \
  >"$E2E_OUT.txt" || e2e_fail "status $?: $(cat "$E2E_OUT.txt" "$program/TWAINDSM.txt")"
grep -q 'manager is C:\\program\\TWAINDSM.dll' "$E2E_OUT.txt" || e2e_fail "another manager: $(head -n 1 "$E2E_OUT.txt")"
for number in 1 2; do
  expect_picture "own manager" "$(picture "$number")" "$E2E_DRIVE_C/images/expected-$number-16.pgm"
  expect_dpi "own manager" "$(picture "$number")" 770
done
# With the last image the source asks to be closed as well; zyracquire does not wait for that.
heard=$(tr -d '\r' <"$program/TWAINDSM.txt")
[ "$heard" = $'XFERREADY\ndelivered with WM_NULL\nCLOSEDSREQ' ] || e2e_fail "the manager heard: $heard"
