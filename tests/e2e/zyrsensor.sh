# Sensors on Windows' own USB bus, as zyrsensor sees them through the same classes as the module: every family and size
# captured and compared with the radiograph that it was shown, hot plug, versions of the driver, faults.
. "$(dirname "$0")/lib.sh"
e2e_begin

# zyrsensor reads the settings beside itself; here the waits for the sensor are short.
mkdir "$E2E_DRIVE_C/tool"
cp "$ZYR_BUILD_DIR/bin/zyrsensor.exe" "$E2E_DRIVE_C/tool/"
cat >"$E2E_DRIVE_C/tool/settings.xml" <<'XML'
<settings>
  <SENSOR id="2000"/><SENSOR id="LUMORAY"/>
  <Debug flush_time="200" capture_timeout="20000"/>
</settings>
XML

sim() { e2e_run zyrsim "$@" >"$E2E_OUT.sim" 2>&1 || e2e_fail "zyrsim $*: $(cat "$E2E_OUT.sim")"; }
sensor() { e2e_run "$E2E_DRIVE_C/tool/zyrsensor.exe" "$@" 2>&1; }
# expect LABEL STATUS PATTERN ARGUMENT...: zyrsensor ends so and prints a line like that.
expect() {
  local label=$1 status=0 wanted=$2 pattern=$3
  shift 3
  sensor "$@" >"$E2E_OUT.txt" || status=$?
  [ "$status" -eq "$wanted" ] || e2e_fail "$label: status $status: $(cat "$E2E_OUT.txt")"
  grep -Eq -- "$pattern" "$E2E_OUT.txt" || e2e_fail "$label: no '$pattern' in: $(cat "$E2E_OUT.txt")"
}

sim install --driver-version 1
expect "no sensor" 3 "There is no sensor" list

# Each takes the time of the sensor's own waits: on one of the builds the sizes that differ most will do.
sizes=("2000 A" "2000 B" "2000 C" "2000 D" "303 C" "303 D")
[ "$ZYR_ARCH" = x64 ] || sizes=("2000 D" "303 C")

echo "each family and size"
version=1
for which in "${sizes[@]}"; do
  read -r family size <<<"$which"
  sim plug "$family" "$size" --expose-after 200
  sim scene "$family" "$size" --out "$E2E_OUT_WINDOWS\\scene.png"
  expect "$which" 0 "difference to .*: mean [0-9]\\.[0-9]+, .* 0\\.[0-9]+ % off" \
    capture --out "$E2E_OUT_WINDOWS\\$family-$size.png" --reference "$E2E_OUT_WINDOWS\\scene.png"
  echo "  $which: $(sed -n 's/^difference to [^ ]* //p' "$E2E_OUT.txt")"
  if [ "$which" = "2000 D" ]; then
    expect "$which binned" 0 "type 5: 578 x 800, 564 x 564 dpi" \
      capture --set binned=true --out "$E2E_OUT_WINDOWS\\binned.tif"
  fi
  sim unplug
  # The other generation's calls for the next one; both families meet both.
  version=$((4 - version))
  sim install --driver-version "$version"
done

echo "a driver that nobody knows, and ghosts"
sim install --driver-version 2
sim plug 2000 A
expect "version 2" 3 "There is no sensor" list
sim unplug
sim install --driver-version 3

# In the background, and not through a pipe, which would hold the lines back: sensor_beside FILE ARGUMENT...
sensor_beside() {
  local output=$1
  shift
  "$ZYR_WINE_RUN" "$E2E_DRIVE_C/tool/zyrsensor.exe" "$@" </dev/null >"$output" 2>&1 &
  beside=$!
}

echo "hot plug, two sensors, one pulled out while the other captures"
sensor_beside "$E2E_OUT.heard" watch --seconds 60
heard() { # COUNT PATTERN
  local i
  for i in $(seq 200); do
    [ "$(grep -Ec -- "$2" "$E2E_OUT.heard")" -eq "$1" ] && return
    sleep 0.1
  done
  e2e_fail "watch: wanted $1 times '$2': $(cat "$E2E_OUT.heard")"
}
sim plug 2000 A --instance 0001
heard 1 "^in  *2000 .*2000.0001"
sim plug 303 C --instance 0002
heard 1 "^in  *LUMORAY .*1005.0002"
sim unplug --instance 0001
heard 1 "^out *2000"
kill "$beside" 2>/dev/null
wait "$beside" 2>/dev/null || true
[ "$(grep -Ec '^(in|out)' "$E2E_OUT.heard")" -eq 3 ] || e2e_fail "watch: $(cat "$E2E_OUT.heard")"

sim plug 2000 A --instance 0001
sensor_beside "$E2E_OUT.capture" capture --sensor 0002 --out "$E2E_OUT_WINDOWS\\other.png"
until grep -q "Waiting for exposure" "$E2E_OUT.capture"; do
  kill -0 "$beside" 2>/dev/null || e2e_fail "capture ended: $(cat "$E2E_OUT.capture")"
  sleep 0.1
done
sim unplug --instance 0001
sensor trigger --sensor 0002 || e2e_fail "trigger: status $?"
wait "$beside" || e2e_fail "capture beside an unplugged sensor: $(cat "$E2E_OUT.capture")"

echo "faults"
sim plug 2000 A --instance 0001 --expose-after 200
for fault in "error --value 31:could not be reset" "silence --at 3:status could not be obtained" \
  "unplug --at 2:could not be pinged"; do
  sim fault ${fault%:*} --instance 0001
  # The other sensor is found all the same.
  expect "fault $fault" 0 "LUMORAY" list
  grep -q "^Unable To Use ZYR Hardware: The ZYR 2000 " "$E2E_OUT.txt" || e2e_fail "no box: $(cat "$E2E_OUT.txt")"
  grep -q "${fault#*:}" "$E2E_OUT.txt" || e2e_fail "$fault: $(cat "$E2E_OUT.txt")"
  ! grep -q "2000.0001" "$E2E_OUT.txt" || e2e_fail "fault $fault: $(cat "$E2E_OUT.txt")"
  if [[ $fault == unplug* ]]; then sim plug 2000 A --instance 0001 --expose-after 200; fi
  expect "after $fault" 0 "2000.0001" list
done
sim fault unplug --instance 0001 --at 40
expect "unplugged while it waits" 1 "timed-out waiting for x-ray exposure or was unplugged" \
  capture --sensor 0001 --out "$E2E_OUT_WINDOWS\\none.png"
