# Applications that take the source away, leave it behind, call it from inside its own calls or give it odd windows while
# a capture runs: nothing crashes, hangs or stays behind, and an exposure that has been made is kept.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
. "$(dirname "$0")/support/sensors.sh"
e2e_begin
sensors_begin
cp "$E2E_TWAIN/Settings.XML" "$E2E_TWAIN/ZYR/"
# There is time for the application between the sensor's readiness and the exposure, and while the frames come.
plug_sensor 2000 A --expose-after 700 --transfer 500 --integration 100 --dark-integration 100 --patience 500

own=$E2E_DRIVE_C/own
mkdir "$own"
cp "$ZYR_BUILD_DIR/bin/rude_application.exe" "$ZYR_BUILD_DIR/bin/fake_dsm/TWAINDSM.dll" "$own/"

for scenario in ${ZYR_SCENARIOS:-all exit-while-downloading}; do
  e2e_run "$own/rude_application.exe" scenario "$scenario" 2>/dev/null || e2e_fail "$scenario: status $?"
done
