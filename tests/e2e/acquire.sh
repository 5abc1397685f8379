# Every mechanism at both depths delivers exactly what the cache files hold: right way up, from black to white, in the
# right order and resolution, and gives the images up afterwards.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
e2e_begin
e2e_settings ReturnImmediatelyIfAvailable=1 Logging=0 'ScanToPath=C:\ZYRTwain'

# One of a real sensor; small ones whose rows need padding; small ones whose rows need none.
make_images "$E2E_DRIVE_C/sensor" 1
make_images "$E2E_DRIVE_C/odd" 2 --size 301x421
make_images "$E2E_DRIVE_C/even" 2 --size 300x420

declare -A count=([sensor]=1 [odd]=2 [even]=2) dpi=([sensor]=1129 [odd]=294 [even]=293)
declare -A size=([sensor]='1156 x 1600' [odd]='301 x 421' [even]='300 x 420')

# transfer IMAGES DEPTH OPTION...: fetches them into $E2E_OUT and compares them with what is expected at DEPTH.
transfer() {
  local images=$1 depth=$2 number label="$*"
  shift 2
  fill_cache "$E2E_DRIVE_C/$images"
  clear_out
  acquire "$@" >"$E2E_OUT.txt" || e2e_fail "$label: status $?: $(cat "$E2E_OUT.txt")"
  for ((number = 1; number <= count[$images]; number++)); do
    expect_picture "$label" "$(picture "$number")" "$E2E_DRIVE_C/$images/expected-$number-$depth.pgm"
    expect_dpi "$label" "$(picture "$number")" "${dpi[$images]}"
    grep -q "^image $number: ${size[$images]}, $depth bit, ${dpi[$images]} x ${dpi[$images]} dpi, " "$E2E_OUT.txt" ||
      e2e_fail "$label: $(cat "$E2E_OUT.txt")"
  done
  expect_empty_cache "$label"
}

transfer sensor 16 --mechanism native --depth 16
transfer sensor 8 --mechanism native --depth 8
transfer sensor 16 --mechanism memory --depth 16 --save tiff
transfer sensor 8 --mechanism memory --depth 8
transfer sensor 8 --mechanism file --depth 16 --format bmp
transfer odd 16 --mechanism native --depth 16
transfer odd 8 --mechanism native --depth 8 --save bmp
transfer odd 16 --mechanism memory --depth 16 --buffer 9999
transfer odd 8 --mechanism file --depth 8 --format bmp
transfer odd 8 --mechanism file --depth 8 --format tiff
# 420 rows are 7 full strips of 60, and an empty one follows.
transfer even 16 --mechanism memory --depth 16 --buffer $((60 * 600))
transfer even 8 --mechanism memory --depth 8 --buffer $((60 * 300))
transfer even 8 --mechanism memory --depth 8 --flavor vanilla

# JPEG loses a little, and only a little. The second image is not asked for and stays.
fill_cache "$E2E_DRIVE_C/odd"
clear_out
acquire --mechanism file --format jpeg --count 1 >"$E2E_OUT.txt" || e2e_fail "file jpeg: status $?"
expect_similar_picture "file jpeg" "$(picture 1)" "$E2E_DRIVE_C/odd/expected-1-8.pgm"
expect_dpi "file jpeg" "$(picture 1)" 294
[ "$(cd "$E2E_DRIVE_C/ZYRTwain" && ls ./*.RAW)" = ./CACHEDRAW_1.RAW ] || e2e_fail "after --count 1: $(ls "$E2E_DRIVE_C/ZYRTwain")"
