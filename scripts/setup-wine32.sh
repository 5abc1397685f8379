#!/usr/bin/env bash
# setup-wine32.sh: a 32-bit Wine in build/wine32 that needs neither root nor multiarch: Debian's i386 packages of
# wine32 and all it depends on, unpacked side by side; libc is the machine's (package libc6-i386).
# Done once; does nothing when it stands.
set -euo pipefail
. "$(dirname "$0")/common.sh"
. "$(dirname "$0")/private-apt.sh"

root=$ZYR_BUILD/wine32
apt=$ZYR_BUILD/wine32-apt

download() {
  private_apt_init "$apt" deb "$(. /etc/os-release && echo "$VERSION_CODENAME")"
  private_apt "$apt" i386 update
  private_apt "$apt" i386 -y --download-only install wine32
}

unpack() {
  local package
  for package in "$apt"/cache/archives/*.deb; do
    dpkg-deb -x "$package" "$root"
  done
  # The machine's libc6-i386 must be the only libc: parts of two do not mix.
  find "$root" \( -name 'ld-linux*.so*' -o -name 'ld-[0-9]*.so' -o -name 'lib[cm].so.*' -o -name 'libpthread.so.*' \
    -o -name 'libdl.so.*' -o -name 'librt.so.*' -o -name 'libresolv.so.*' -o -name 'libutil.so.*' \
    -o -name 'libanl.so.*' -o -name 'libBrokenLocale.so.*' -o -name 'libmemusage.so' -o -name 'libnsl.so.*' \
    -o -name 'libnss_*.so.*' -o -name 'libthread_db.so.*' -o -name 'libpcprofile.so' -o -name 'libmvec.so.*' \) -delete
}

# Several of Wine's DLLs import zlib1.dll, which Debian ships apart and whose package marks the copy as a builtin
# when it is configured: the signature stands at offset 64.
mark_zlib_builtin() {
  local dll=$root/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll
  rm -f "$dll"
  cp "$root/usr/i686-w64-mingw32/lib/zlib1.dll" "$dll"
  chmod u+w "$dll"
  printf 'Wine builtin DLL\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0' | dd of="$dll" bs=1 seek=64 conv=notrunc status=none
}

setup() {
  [ -f "$root/complete" ] && return 0
  rm -rf "$root" "$apt"
  mkdir -p "$root"
  download
  unpack
  mark_zlib_builtin
  rm -rf "$apt"
  touch "$root/complete"
}

# As in build-third-party.sh: a child process holds the lock, so that an error ends it.
if [ "${1:-}" = --locked ]; then setup; else once "$root.lock" "$0" --locked; fi
