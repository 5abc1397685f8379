# Simulated sensors on Windows' own USB bus, seen by a program that knows nothing of them: found, opened, called by both
# generations of control codes, exposed, disturbed, pulled out, heard coming and going.
. "$(dirname "$0")/lib.sh"
. "$ZYR_SOURCE_DIR/scripts/simulator.sh"
e2e_begin

# expect LABEL WANTED COMMAND...: the command prints exactly that.
expect() {
  local label=$1 wanted=$2 printed
  shift 2
  printed=$("$@" 2>&1) || true
  [ "$printed" = "$wanted" ] || e2e_fail "$label: wanted '$wanted', got '$printed'"
}

sim() { zyrsim "$ZYR_ARCH" "$ZYR_WINE_PREFIX" "$ZYR_BUILD_DIR/bin" "$@"; }
sim_ok() { sim "$@" >"$E2E_OUT.txt" 2>&1 || e2e_fail "zyrsim $*: status $?: $(cat "$E2E_OUT.txt")"; }
# A field of the only sensor's line.
stat() { sim stat | tr ' ' '\n' | sed -n "s/^$1=//p"; }
sensors() { e2e_run usb_probe list | cut -d ' ' -f 1,3-; }
path() { echo "\\\\?\\usb#vid_082e&pid_$1#${2:-0001}#{a5dcbf10-6530-11d2-901f-00c04fb951ed}"; }
# What the steps gave, without their times.
call() { e2e_run usb_probe call "$@" | sed -E 's/, [0-9]+ ms$//'; }
# The sum of the rows of a frame.
rows() { sed -n 's/^rows:.*: //p'; }

expect "before" "zyrsim: The bus is not there. Try zyrsim install." sim stat
sim_ok install --driver-version 1
expect "no sensor" "" sim stat
expect "no sensor" "zyrsim: No sensor is plugged in." sim expose

# Not by e2e_run, whose pipe would hold the lines back.
"$ZYR_WINE_RUN" "$ZYR_BUILD_DIR/bin/usb_probe.exe" watch 200 15 </dev/null >"$E2E_OUT.heard" &
watcher=$!
until grep -q watching "$E2E_OUT.heard"; do
  kill -0 "$watcher" || e2e_fail "usb_probe watch does not start"
  sleep 0.05
done

echo "each family and size"
declare -A product=([2000]=2000 [303]=1005)
for which in "2000 A" "2000 B" "2000 C" "2000 D" "303 C" "303 D"; do
  read -r family size <<<"$which"
  sim_ok plug "$family" "$size"
  grep -Eq "^0001: USB.VID_082E&PID_${product[$family]}.0001, (CCD|LR)[0-9]+$size\$" "$E2E_OUT.txt" ||
    e2e_fail "plug $which: $(cat "$E2E_OUT.txt")"
  expect "list $which" "USB\\VID_082E&PID_${product[$family]}\\0001 1 ZYR $family digital X-ray sensor" sensors
  expect "echo $which" $'reset: ok\nwrite:0:0EAA55: ok\nread:1:64: 8E AA 55 00 00 00 00 00' \
    call pipes "$(path "${product[$family]}")" reset write:0:0EAA55 read:1:64
  expect "size $which" "$size" stat size
  sim_ok unplug
  expect "unplugged $which" "" sensors
done

echo "versions of the driver, and two sensors at once"
for version in 2 3; do
  sim_ok install --driver-version "$version"
  sim_ok plug 303 C --instance "V$version"
  expect "version $version" "USB\\VID_082E&PID_1005\\V$version $version ZYR 303 digital X-ray sensor" \
    eval "sensors | grep V$version"
done
expect "which" "zyrsim: Which sensor? --instance V2 V3" sim unplug
expect "taken" "zyrsim: A sensor V3 is plugged in already." sim plug 2000 A --instance v3
expect "old calls" "reset: error 1" call pipes "$(path 1005 v3)" reset
expect "new calls" "reset: ok" call endpoints "$(path 1005 v3)" reset
sim_ok unplug --instance V2

echo "an exposure of each generation"
# capture WAY PRODUCT INSTANCE SIZE-COMMAND STATE READS BYTES: both frames, and what the sensor says ahead of each.
arm=(write:0:0270 write:0:022040)
capture() {
  local device
  device=$(path "$2" "$3")
  call "$1" "$device" "write:0:02$4" "${arm[@]}" read:1:64 >/dev/null
  expect "armed" yes stat armed
  sim_ok expose --wait 5
  call "$1" "$device" wait:400 read:1:64 "rows:$6:$7" wait:400 read:1:64 "rows:$6:$7" >"$E2E_OUT.frames"
  [ "$(grep -c "^read:1:64: 83 [46]5" "$E2E_OUT.frames")" -eq 2 ] || e2e_fail "capture: $(cat "$E2E_OUT.frames")"
  rows <"$E2E_OUT.frames" | tr '\n' ' '
}
frames=$(capture endpoints 1005 v3 25 4 944 1232)
[[ $frames =~ ^([0-9]+)\ ([0-9]+)\ $ ]] && [ "${BASH_REMATCH[1]}" != "${BASH_REMATCH[2]}" ] ||
  e2e_fail "two different frames: $frames"
expect "frames" 2 stat frames
expect "bytes" $((2 * 944 * 1232 + 3 * 64)) stat bytes-in
expect "wasted" "zyrsim: The sensor is not armed." sim expose
sim_ok unplug

sim_ok install --driver-version 1
sim_ok plug 2000 B
first=$(capture pipes 2000 0001 29 4 800 2312)
again=$(capture pipes 2000 0001 29 4 800 2312)
[ -n "$first" ] && [ "$first" = "$again" ] || e2e_fail "the same exposure twice: '$first', '$again'"

echo "another radiograph"
/usr/bin/convert -size 600x900 gradient:black-white -depth 16 -interlace PNG "$E2E_OUT/ramp.png"
/usr/bin/convert "$E2E_OUT/ramp.png" "$E2E_OUT/ramp.pgm"
sim_ok load 'C:\out\ramp.png' --exposure 7
ramp=$(capture pipes 2000 0001 29 4 800 2312)
[ "$ramp" != "$first" ] || e2e_fail "load changes nothing"
sim_ok load 'C:\out\ramp.pgm' --exposure 7
expect "png and pgm alike" "$ramp" capture pipes 2000 0001 29 4 800 2312
sim_ok load phantom --exposure 0
expect "the phantom again" "$first" capture pipes 2000 0001 29 4 800 2312
expect "no picture" 'zyrsim: C:\out\none.png cannot be opened.' sim load 'C:\out\none.png'

echo "faults"
device=$(path 2000)
sim_ok fault error --value 1234 --at 1
expect "error" $'reset: ok\nreset: error 1234\nreset: ok' call pipes "$device" reset reset reset
sim_ok fault wrong --value 0
expect "wrong byte" "read:1:64: 7C 05 00 00 00 00 00 00" call pipes "$device" read:1:64
sim_ok fault short --value 1
expect "short" "read:1:64: 83 00 00 00 00 00 00 00" call pipes "$device" read:1:64
sim_ok fault error --value 5
sim_ok fault none
expect "taken back" "reset: ok" call pipes "$device" reset
sim_ok fault unplug --at 1
expect "unplug" $'reset: ok\nreset: error 1167\nreset: error 1167' call pipes "$device" reset reset reset
until [ -z "$(sim stat)" ]; do sleep 0.05; done
expect "gone" "" sensors
expect "gone" "open: error 2" call pipes "$device" reset

echo "waiting calls"
sim_ok plug 2000 A --timeout 700
expect "time-out" "read:3:64: error 121" call pipes "$device" read:3:64
sim_ok unplug
sim_ok plug 2000 A --timeout 60000 --transfer 100000
took=$(e2e_run usb_probe call pipes "$device" reset | sed -E 's/.*, ([0-9]+) ms/\1/')
[ "$took" -ge 100 ] && [ "$took" -lt 1000 ] || e2e_fail "a transfer of 100 ms took $took ms"
# A program that dies while it waits leaves nothing behind.
call pipes "$device" spawn:read:3:64 wait:500 die || true
expect "after death" 0 stat handles
# Pulled out while a program waits; the same instance comes back while the old handle is still open.
call pipes "$device" read:3:64 wait:8000 reset >"$E2E_OUT.pulled" &
caller=$!
until [ "$(stat handles)" = 1 ]; do sleep 0.1; done
sim_ok unplug
sim_ok plug 2000 A
expect "back again" "reset: ok" call pipes "$device" reset
wait "$caller"
expect "pulled out" $'read:3:64: error 1167\nwait:8000: ok\nreset: error 1167' cat "$E2E_OUT.pulled"

echo "hot plug was heard"
wait "$watcher" || e2e_fail "not all was heard: $(cat "$E2E_OUT.heard")"
heard() { tr -d '\r' <"$E2E_OUT.heard" | sed -nE 's/^([a-z]+) .*pid_([0-9]+)#([^#]*)#.*/\1 \2 \3/Ip' | tr '[:upper:]' '[:lower:]'; }
wanted=
for pid in 2000 2000 2000 2000 1005 1005; do wanted+="arrival $pid 0001"$'\n'"removal $pid 0001"$'\n'; done
expect "heard" "${wanted}arrival 1005 v2"$'\n'"arrival 1005 v3"$'\n'"removal 1005 v2" heard

echo "removal"
sim_ok remove
expect "removed" "zyrsim: The bus is not there. Try zyrsim install." sim stat
[ ! -e "$E2E_DRIVE_C/windows/system32/drivers/zyrsimbus.sys" ] || e2e_fail "remove leaves the driver"
[ ! -e "$E2E_DRIVE_C/windows/system32/drivers/zyrusb.sys" ] || e2e_fail "remove leaves the version file"
sim_ok install
sim_ok plug 303 D
expect "installed again" "USB\\VID_082E&PID_1005\\0001 3 ZYR 303 digital X-ray sensor" sensors
