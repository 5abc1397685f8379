# What a simulated exposure must become. Source after common.sh.

# expected_crc FAMILY SIZE DEPTH: from the test that computes it without Windows.
expected_crc() {
  awk -v which="$1-$2-$3" '$1 == which { print $2 }' "$ZYR_ROOT/tests/acquire/golden/delivered.inc"
}

# crc_of PICTURE DEPTH: the CRC-32 of a grey picture's samples, rows from the top, 16-bit ones little-endian. ImageMagick
# reads the picture, which knows nothing of the code that wrote it; gzip has the CRC in its last bytes.
crc_of() {
  /usr/bin/convert "$1" -depth "$2" -endian LSB gray:- | gzip -1 -c | tail -c 8 | od -An -t x4 -N 4 | tr -d ' '
}
