#!/usr/bin/env bash
# build-third-party.sh x64|x86|host: static libraries from Debian's source packages with Debian's patches. For the MinGW
# targets libjpeg-turbo, libtiff and, for the tools, zlib, in build/third_party/<triplet>; for them and for the host, in
# build/third_party/host, musl's mathematical functions, which give the same bits everywhere. Done once; does nothing
# when it stands.
set -euo pipefail
. "$(dirname "$0")/common.sh"
. "$(dirname "$0")/private-apt.sh"

arch=${1:?x64, x86 or host}
if [ "$arch" = host ]; then triplet=host; else triplet=$(triplet_of "$arch"); fi
base=$ZYR_BUILD/third_party
prefix=$base/$triplet
sources=$base/sources
# Raise this when the way of building below changes: it makes every checkout build anew.
recipe=3

# The upstream releases that this system is built and tested with. Debian's revision, which adds security
# patches, is deliberately left open.
pinned='254f3642b04e309fee775123133c6464181addc150499561020312ec61c1bf7c  libjpeg-turbo_2.1.5.orig.tar.gz
7d5b0b6062521e4627e099e4c9dc8248d32a30285e959b7eecaa780cf8cfd4a4  musl_1.2.3.orig.tar.gz
638f43d7dea33948d5dee7f39572fc0194d9cc3c74195de9dd26a4388a1f880a  tiff_4.5.0.orig.tar.bz2
71feb7947e3c00ef125f83b79a4e529bde31171e5babe48b391f06758d1ab0a1  zlib_1.2.13.dfsg.orig.tar.bz2'

check_pins() {
  (cd "$sources" && sha256sum --check --quiet <<<"$pinned") || {
    echo "The mirror has not the upstream releases that are pinned in scripts/build-third-party.sh."
    echo "It has: $(cd "$sources" && echo ./*.orig.tar.*)"
    return 1
  }
}

unpack() { # PACKAGE FOLDER
  # --no-check leaves out the signature, for which a fresh machine has no keyring; apt checked the index.
  (cd "$sources" && dpkg-source --no-check -x "$1"_*.dsc "$2")
}

fetch_sources() {
  [ "$(cat "$sources/complete" 2>/dev/null)" = "$recipe" ] && return 0
  rm -rf "$sources"
  mkdir -p "$sources"
  private_apt_init "$sources/apt" deb-src
  private_apt "$sources/apt" amd64 update
  (cd "$sources" && private_apt "$sources/apt" amd64 source --download-only \
    libjpeg-turbo tiff zlib musl)
  check_pins
  unpack libjpeg-turbo jpeg
  unpack tiff tiff
  unpack zlib zlib
  unpack musl musl
  rm -rf "$sources/apt"
  echo "$recipe" >"$sources/complete"
}

cross_cmake() { # SOURCE BUILD OPTION...
  local source=$1 build=$2
  shift 2
  rm -rf "$build"
  cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_PREFIX="$prefix" \
    -DCMAKE_TOOLCHAIN_FILE="$ZYR_ROOT/cmake/toolchain-$arch.cmake" "$@"
}

build_jpeg() {
  local build=$prefix/build-jpeg
  cross_cmake "$sources/jpeg" "$build" -DENABLE_SHARED=OFF -DENABLE_STATIC=ON -DWITH_TURBOJPEG=OFF -DREQUIRE_SIMD=ON
  cmake --build "$build" --parallel "$ZYR_JOBS" --target jpeg-static
  cp "$build/libjpeg.a" "$prefix/lib/"
  cp "$sources"/jpeg/{jpeglib,jmorecfg,jerror}.h "$build/jconfig.h" "$prefix/include/"
}

# Only what uncompressed grey and colour files need: every codec and tool is off.
build_tiff() {
  local build=$prefix/build-tiff off=() feature
  for feature in tiff-tools tiff-tests tiff-contrib tiff-docs tiff-deprecated cxx zlib libdeflate jpeg old-jpeg \
    jbig lerc lzma webp zstd pixarlog tiff-opengl ccitt thunder next logluv mdi lzw packbits; do
    off+=("-D$feature=OFF")
  done
  cross_cmake "$sources/tiff" "$build" -DBUILD_SHARED_LIBS=OFF "${off[@]}"
  cmake --build "$build" --parallel "$ZYR_JOBS" --target tiff
  cp "$build/libtiff/libtiff.a" "$prefix/lib/"
  cp "$sources"/tiff/libtiff/{tiff,tiffio,tiffvers}.h "$build/libtiff/tiffconf.h" "$prefix/include/"
}

build_zlib() {
  local build=$prefix/build-zlib
  cross_cmake "$sources/zlib" "$build"
  cmake --build "$build" --parallel "$ZYR_JOBS" --target zlibstatic
  cp "$build"/libz*static.a "$prefix/lib/libz.a"
  cp "$sources/zlib/zlib.h" "$build/zconf.h" "$prefix/include/"
}

# musl's generic C files of pow, exp, log, sin, cos and hypot, and what these call, under names of their own. They
# see no <math.h> of a C library, whose declarations would clash: only the words here.
build_math() {
  local build=$prefix/build-math compiler=gcc archiver=ar flags=() name
  if [ "$arch" != host ]; then compiler=$triplet-gcc archiver=$triplet-ar; fi
  if [ "$arch" = x86 ]; then flags=(-msse2 -mfpmath=sse -mstackrealign); fi
  mkdir -p "$build"
  echo '#define hidden' >"$build/features.h"
  printf '#define %s\n' '__LITTLE_ENDIAN 1234' '__BYTE_ORDER __LITTLE_ENDIAN' >"$build/endian.h"
  {
    echo 'typedef float float_t; typedef double double_t;'
    printf '#define %s\n' 'fabs __builtin_fabs' 'sqrt __builtin_sqrt' 'INFINITY __builtin_inff()'
    for name in pow exp log sin cos hypot scalbn floor __sin __cos __rem_pio2 __rem_pio2_large __exp_data __log_data \
      __pow_log_data __math_{divzero,invalid,oflow,uflow,xflow}; do
      echo "#define $name zyr_musl_$name"
    done
    printf 'double %s(double);\n' exp log sin cos floor
    printf 'double %s;\n' 'pow(double, double)' 'hypot(double, double)' 'scalbn(double, int)'
  } >"$build/math.h"
  for name in pow exp log sin cos hypot scalbn floor __sin __cos __rem_pio2 __rem_pio2_large exp_data log_data \
    pow_data __math_{divzero,invalid,oflow,uflow,xflow}; do
    "$compiler" -std=c99 -O2 -fPIC -ffreestanding -ffp-contract=off -fno-math-errno "${flags[@]}" \
      -I"$build" -I"$sources/musl/src/internal" -I"$sources/musl/arch/generic" -include features.h -include math.h \
      -Werror=implicit-function-declaration \
      -c "$sources/musl/src/math/$name.c" -o "$build/$name.o"
  done
  "$archiver" rcs "$prefix/lib/libzyrmath.a" "$build"/*.o
}

build() {
  [ "$(cat "$prefix/complete" 2>/dev/null)" = "$recipe" ] && return 0
  fetch_sources
  rm -rf "$prefix"
  mkdir -p "$prefix/lib" "$prefix/include"
  build_math
  if [ "$arch" != host ]; then
    build_jpeg
    build_tiff
    build_zlib
  fi
  rm -rf "$prefix"/build-*
  echo "$recipe" >"$prefix/complete"
}

# `once build` would run the function where bash ignores errors; a child process does not.
if [ "${2:-}" = --locked ]; then build; else once "$base/lock" "$0" "$arch" --locked; fi
