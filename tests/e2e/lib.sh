# For the scripts beside this file, each of which is one CTest test on x64 and on x86. CTest sets
#   ZYR_ARCH        x64 or x86
#   ZYR_BUILD_DIR   the build's folder; programs and the module are in its bin/
#   ZYR_SOURCE_DIR  the root of the repository
#   ZYR_WINE_RUN    the emulator; ZYR_WINE_PREFIX, set by e2e_begin, tells it the prefix
#
# A script reads
#   . "$(dirname "$0")/lib.sh"
#   e2e_begin
#   e2e_settings Logging=1 'ScanToPath=C:\ZYRTwain'
#   e2e_run zyracquire --list >"$E2E_OUT/list.txt"
#   grep -q 'ZYR TWAIN' "$E2E_OUT/list.txt" || e2e_fail "not listed"
# and ends with status 0 if all is well. Where there is no Wine it ends with 77.
#
#   E2E_DRIVE_C  the prefix's drive C
#   E2E_TWAIN    its TWAIN folder; the module is installed in ZYR below it
#   E2E_SECONDS  how long the session may last, to be set ahead of e2e_begin (600)
#   E2E_OUT      a folder for results, which Windows programs see as $E2E_OUT_WINDOWS

set -euo pipefail

if [ -z "${ZYR_SOURCE_DIR:-}" ]; then
  # By hand: ZYR_ARCH=x86 tests/e2e/some.sh
  ZYR_SOURCE_DIR=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
  ZYR_ARCH=${ZYR_ARCH:-x64}
  ZYR_BUILD_DIR=$ZYR_SOURCE_DIR/build/$ZYR_ARCH
  ZYR_WINE_RUN=$ZYR_SOURCE_DIR/scripts/run-under-wine
fi
. "$ZYR_SOURCE_DIR/scripts/common.sh"
. "$ZYR_SOURCE_DIR/scripts/wine.sh"
. "$ZYR_SOURCE_DIR/scripts/module.sh"

# e2e_begin: a fresh prefix of the script's own with the module installed in it and a running session. When the script
# ends, so does the session; the prefix of a failed test stays for whoever wants to look.
e2e_begin() {
  wine_select "$ZYR_ARCH" || exit 77
  export ZYR_WINE_PREFIX=$ZYR_BUILD_DIR/e2e/$(basename "$0" .sh)
  E2E_DRIVE_C=$ZYR_WINE_PREFIX/drive_c
  E2E_TWAIN=$E2E_DRIVE_C/windows/$(twain_folder "$ZYR_ARCH")
  E2E_OUT=$E2E_DRIVE_C/out
  E2E_OUT_WINDOWS='C:\out'
  # Two runs of the same script would end each other's session.
  mkdir -p "${ZYR_WINE_PREFIX%/*}"
  exec 9>"$ZYR_WINE_PREFIX.run"
  flock 9
  wine_end_session "$ZYR_ARCH" "$ZYR_WINE_PREFIX"
  wine_copy_prefix "$ZYR_ARCH" "$ZYR_WINE_PREFIX" || exit 77
  mkdir "$E2E_OUT"
  install_module "$ZYR_ARCH" "$ZYR_WINE_PREFIX" "$ZYR_BUILD_DIR/bin"
  trap e2e_end EXIT
  wine_session "$ZYR_ARCH" "$ZYR_WINE_PREFIX" "${E2E_SECONDS:-600}" 9>&- || exit 77
}

e2e_end() {
  local status=$?
  wine_end_session "$ZYR_ARCH" "$ZYR_WINE_PREFIX"
  [ "$status" -ne 0 ] || rm -rf "$ZYR_WINE_PREFIX"
  return "$status"
}

# e2e_settings NAME=VALUE...: settings of the module; digits make a number, anything else a text.
e2e_settings() {
  module_settings "$ZYR_ARCH" "$ZYR_WINE_PREFIX" "$@"
}

# e2e_run PROGRAM ARGUMENT...: a program of the build, named without folder and suffix, or any path to an .exe.
# Its lines end as lines do here; its exit status is passed on (set -o pipefail).
e2e_run() {
  local program=$1
  shift
  [[ $program == */* ]] || program=$ZYR_BUILD_DIR/bin/$program.exe
  "$ZYR_WINE_RUN" "$program" "$@" </dev/null | tr -d '\r'
}

# e2e_fail TEXT...: ends the test.
e2e_fail() {
  echo "FAILED: $*" >&2
  exit 1
}
