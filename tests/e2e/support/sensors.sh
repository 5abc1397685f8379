# For the scripts in the folder above: simulated sensors, the module that captures with them, and its dialog. Source after
# lib.sh and pictures.sh.
. "$ZYR_SOURCE_DIR/scripts/simulator.sh"
. "$ZYR_SOURCE_DIR/scripts/captured.sh"
. "$ZYR_SOURCE_DIR/scripts/window.sh"

# sensors_begin: the bus stands, and the module waits for a sensor no longer than it must.
sensors_begin() {
  sim install
  cat >"$E2E_TWAIN/Settings.XML" <<'XML'
<settings>
  <SENSOR id="2000"/><SENSOR id="LUMORAY"/>
  <Debug flush_time="200" capture_timeout="20000"/>
</settings>
XML
  e2e_settings 'ScanToPath=C:\ZYRTwain' AlwaysPromptForSensor=0 CheckForConflicts=0 Logging=1
}

sim() { e2e_run zyrsim "$@" >"$E2E_OUT.sim" 2>&1 || e2e_fail "zyrsim $*: $(cat "$E2E_OUT.sim")"; }

# plug_sensor FAMILY SIZE [OPTION...]: plugs it in as 0001 and has the module's user choose it.
plug_sensor() {
  sim plug "$@" --instance 0001
  choose_sensor "$ZYR_ARCH" "$ZYR_WINE_PREFIX" "$1"
}

expect_captured() { # LABEL PICTURE FAMILY SIZE DEPTH
  local found
  found=$(crc_of "$2" "$5")
  [ "$found" = "$(expected_crc "$3" "$4" "$5")" ] || e2e_fail "$1: the picture's CRC is $found"
}

# dialog STEP...: works the capture dialog, or with --title a box above it.
dialog() { e2e_run zyrdialog "$@" >"$E2E_OUT.dialog" 2>&1 || e2e_fail "zyrdialog $*: $(cat "$E2E_OUT.dialog")"; }

# acquire_beside OPTION...: zyracquire in the background, or the copy of it that $acquire_program names; its lines go to
# $E2E_OUT.acquired.
acquire_beside() {
  "$ZYR_WINE_RUN" "${acquire_program:-$ZYR_BUILD_DIR/bin/zyracquire.exe}" --source 'zyr twain' --out "$E2E_OUT_WINDOWS" "$@" </dev/null \
    >"$E2E_OUT.acquired" 2>&1 &
  acquiring=$!
}

acquired() { # LABEL [STATUS]
  local status=0
  wait "$acquiring" || status=$?
  [ "$status" -eq "${2:-0}" ] || e2e_fail "$1: zyracquire ended with $status: $(cat "$E2E_OUT.acquired")"
}
