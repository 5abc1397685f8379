#!/usr/bin/env bash
# check-exports.sh OBJDUMP MODULE: the module exports DS_Entry, undecorated, and nothing else, and needs no DLL that is
# not on every Windows since 7.
set -euo pipefail

allowed=' advapi32 bcrypt comctl32 comdlg32 gdi32 kernel32 msimg32 msvcrt ole32 oleaut32 setupapi shell32 user32 version winmm ws2_32 '

dump=$("$1" -p "$2")
# Rows of the "[Ordinal/Name Pointer] Table", as in "	[   0] DS_Entry".
exports=$(awk '/\[Ordinal\/Name Pointer\] Table/ { table = 1; next }
  table && !/^[ \t]*\[/ { exit }
  table { print $NF }' <<<"$dump")
failed=0
if [ "$exports" != DS_Entry ]; then
  echo "exports are to be DS_Entry alone, but are: ${exports//$'\n'/ }"
  failed=1
fi
while read -r dll; do
  name=${dll,,}
  if [[ $allowed != *" ${name%.dll} "* ]]; then
    echo "needs $dll, which is no DLL of the system"
    failed=1
  fi
done < <(sed -n 's/^[ \t]*DLL Name: //p' <<<"$dump")
exit $failed
