# Simulated sensors in a Wine prefix with a running session. Source after common.sh, wine.sh and
# module.sh.

# zyrsim ARCH PREFIX BINARIES ARGUMENT...: runs BINARIES/zyrsim.exe there. Lines end as lines do here; the exit status is
# zyrsim's with `set -o pipefail`. What it starts lives on in the session.
zyrsim() {
  local arch=$1 prefix=$2 binaries=$3
  shift 3
  wine_in_session "$arch" "$prefix" "$binaries/zyrsim.exe" "$@" </dev/null 2>&1 | tr -d '\r'
}

# install_simulator ARCH PREFIX BINARIES [DRIVER-VERSION]: the bus, ready for `zyrsim plug`. Once more with another version:
# sensors that are plugged in from then on have that one.
install_simulator() {
  zyrsim "$1" "$2" "$3" install --driver-version "${4:-3}"
}

# choose_sensor ARCH PREFIX FAMILY: the sensor of instance 0001 becomes the one that the module's user has chosen.
choose_sensor() {
  local name=2000 product=2000
  [ "$3" = 303 ] && name=LUMORAY product=1005
  module_settings "$1" "$2" "SelectedSensorNAME:=$name" SelectedSensorID:=0001 \
    "SelectedSensorHWID=USB\\VID_082E&PID_$product\\0001"
}
