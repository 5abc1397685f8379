# The table of capabilities, as an application sees them through the manager, and a cache image of 8 bits.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
e2e_begin
e2e_settings ReturnImmediatelyIfAvailable=1 Logging=0 'ScanToPath=C:\ZYRTwain'

e2e_run zyracquire --list >"$E2E_OUT.txt" || e2e_fail "--list: status $?"
[ "$(cat "$E2E_OUT.txt")" = '* ZYR TWAIN (Korvida, Inc., TWAIN, version 1.1, TWAIN 1.9)' ] ||
  e2e_fail "--list: $(cat "$E2E_OUT.txt")"

e2e_run zyracquire --source ZYR --caps >"$E2E_OUT.txt" || e2e_fail "--caps: status $?"
[ "$(grep -cE '^I?CAP_' "$E2E_OUT.txt")" -eq 24 ] || e2e_fail "not 24 capabilities: $(cat "$E2E_OUT.txt")"
expect_row() {
  tr -s ' ' <"$E2E_OUT.txt" | grep -qxF -- "$1" || e2e_fail "not in the table: $1: $(cat "$E2E_OUT.txt")"
}
expect_row 'ICAP_XFERMECH Enumeration UINT16 2 (Memory) 2 (Memory) 0 (Native), 1 (File), 2 (Memory)'
expect_row 'ICAP_BITDEPTH Enumeration UINT16 16 8 8, 16'
expect_row 'ICAP_PIXELTYPE Enumeration UINT16 1 (Grayscale) 1 (Grayscale) 1 (Grayscale)'
expect_row 'ICAP_UNITS Enumeration UINT16 0 (Inches) 0 (Inches) 0 (Inches), 1 (Centimeters), 5 (Pixels)'
expect_row 'ICAP_IMAGEFILEFORMAT Enumeration UINT16 2 (BMP) 2 (BMP) 0 (TIFF), 2 (BMP), 4 (JFIF)'
expect_row 'ICAP_PIXELFLAVOR OneValue UINT16 0 (Chocolate) 0 (Chocolate) 0 (Chocolate)'
expect_row 'ICAP_PHYSICALWIDTH OneValue FIX32 8 8 8'
expect_row 'CAP_XFERCOUNT OneValue INT16 -1 -1 -1'
expect_row 'CAP_AUTHOR OneValue STR128 Korvida, Inc. Korvida, Inc. Korvida, Inc.'

# An image that was taken at 8 bits has 8 bits, whatever was agreed on.
make_images "$E2E_DRIVE_C/images" 1 --size 303d --depth 8
for mechanism in native memory; do
  fill_cache "$E2E_DRIVE_C/images"
  acquire --mechanism "$mechanism" --depth 16 >"$E2E_OUT.txt" || e2e_fail "$mechanism: status $?"
  grep -q '798 x 1070, 8 bit, 770 x 770 dpi' "$E2E_OUT.txt" || e2e_fail "$mechanism: $(cat "$E2E_OUT.txt")"
  expect_picture "$mechanism" "$(picture 1)" "$E2E_DRIVE_C/images/expected-1-8.pgm"
done
