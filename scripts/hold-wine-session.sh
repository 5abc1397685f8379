#!/usr/bin/env bash
# hold-wine-session.sh ARCH PREFIX SECONDS: the process behind wine_start_session. Starts an X server and Wine's command
# interpreter, which waits for input that never comes, and stays until Wine in this prefix is ended or time is up.
set -uo pipefail
. "$(dirname "$0")/common.sh"
. "$(dirname "$0")/wine.sh"

arch=$1 prefix=$2 seconds=$3
session=$prefix/session

start_x_server() {
  Xvfb -displayfd 3 -screen 0 "${ZYR_SCREEN:-1280x900}x24" -nolisten tcp 3>"$session/display.number" &
  xvfb=$!
  trap 'kill "$xvfb" 2>/dev/null; wait "$xvfb" 2>/dev/null' EXIT
  until [ -s "$session/display.number" ]; do
    kill -0 "$xvfb" 2>/dev/null || die "Xvfb does not start"
    sleep 0.02
  done
  echo ":$(cat "$session/display.number")" >"$session/display"
}

# ZYR_SESSION_DISPLAY names a display that is there already, for people to sit before.
if [ -n "${ZYR_SESSION_DISPLAY:-}" ]; then
  echo "$ZYR_SESSION_DISPLAY" >"$session/display"
else
  start_x_server
fi

wine_environment "$arch" "$prefix" "$(cat "$session/display")" || die "no Wine for $arch"
mkfifo "$session/never"
exec 4<>"$session/never"
timeout "$seconds" env "${wine_env[@]}" "$wine_loader" cmd.exe <&4 >"$session/prompt" 2>/dev/null &
holder=$!
until [ -s "$session/prompt" ]; do
  kill -0 "$holder" 2>/dev/null || die "Wine does not start"
  sleep 0.02
done
# The desktop's own process starts with the first window. Were that a test's, it would keep that test's pipe open.
env "${wine_env[@]}" "$wine_loader" rundll32.exe user32.dll,GetDesktopWindow </dev/null >/dev/null 2>&1
touch "$session/ready"
wait "$holder"
env "${wine_env[@]}" "$wine_server" -k
