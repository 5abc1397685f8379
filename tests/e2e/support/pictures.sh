# For the scripts in the folder above: real cache files, and pictures held against what they must show. Source after lib.sh.
# Pictures are read by ImageMagick, which knows nothing of the code under test.

# make_images FOLDER COUNT [OPTION...]: cache files, and what must be delivered of them as expected-NUMBER-DEPTH.pgm. The
# folder is below drive C.
make_images() {
  local folder=$1 count=$2 windows number name depth
  shift 2
  windows="C:${folder#"$E2E_DRIVE_C"}"
  mkdir -p "$folder"
  e2e_run makephantom --out "$windows" --count "$count" "$@"
  for ((number = 1; number <= count; number++)); do
    name=CACHEDRAW.RAW
    [ "$number" -gt 1 ] && name=CACHEDRAW_$((number - 1)).RAW
    for depth in 8 16; do
      e2e_run makephantom --expect "$windows/$name" --as "$depth" --pgm "$windows/expected-$number-$depth.pgm"
    done
  done
}

# fill_cache FOLDER: the scan folder holds these cache files and nothing else.
fill_cache() {
  rm -rf "$E2E_DRIVE_C/ZYRTwain"
  mkdir "$E2E_DRIVE_C/ZYRTwain"
  cp "$1"/CACHEDRAW*.RAW "$E2E_DRIVE_C/ZYRTwain/"
}

expect_empty_cache() { # LABEL
  [ -z "$(ls -A "$E2E_DRIVE_C/ZYRTwain")" ] || e2e_fail "$1: left in the cache: $(ls "$E2E_DRIVE_C/ZYRTwain")"
}

clear_out() {
  rm -f "$E2E_OUT"/*
}

# acquire OPTION...: zyracquire with pictures into $E2E_OUT. Nobody is there to answer a message box.
acquire() {
  e2e_run zyracquire --source 'zyr twain' --out "$E2E_OUT_WINDOWS" --timeout 30 --unattended "$@"
}

# picture NUMBER: the one file that holds the image of that number.
picture() {
  local files=("$E2E_OUT/image-$1".*)
  [ ${#files[@]} -eq 1 ] && [ -f "${files[0]}" ] || e2e_fail "image $1: ${files[*]}"
  echo "${files[0]}"
}

different_pixels() { # PICTURE EXPECTED [OPTION...]
  local picture=$1 expected=$2
  shift 2
  /usr/bin/compare "$@" -metric AE "$picture" "$expected" null: 2>&1 || true
}

expect_picture() { # LABEL PICTURE EXPECTED
  local different
  different=$(different_pixels "$2" "$3")
  [ "$different" = 0 ] || e2e_fail "$1: ${2##*/} differs from ${3##*/}: $different"
}

expect_similar_picture() { # LABEL PICTURE EXPECTED
  local different
  different=$(different_pixels "$2" "$3" -fuzz 4%)
  [ "$different" = 0 ] || e2e_fail "$1: ${2##*/} is not like ${3##*/}: $different"
}

# expect_dpi LABEL PICTURE DPI: both ways, rounded.
expect_dpi() {
  local resolution
  resolution=$(/usr/bin/identify -units PixelsPerInch -format '%x %y\n' "$2" | awk '{ printf "%.0f %.0f", $1, $2 }')
  [ "$resolution" = "$3 $3" ] || e2e_fail "$1: ${2##*/} has $resolution dpi"
}
