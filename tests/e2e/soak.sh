# Captures in series through the manager, returned in groups, in one program: it holds no more at the end than near the
# start. ZYR_SOAK=200 makes it a long run.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
. "$(dirname "$0")/support/sensors.sh"
captures=${ZYR_SOAK:-12}
E2E_SECONDS=$((300 + 15 * captures))
e2e_begin
sensors_begin
plug_sensor 2000 A --expose-after 50 --integration 50 --dark-integration 50
e2e_run rude_application soak "$captures" 2>/dev/null || e2e_fail "the soak: status $?"
expect_empty_cache "after the soak"
