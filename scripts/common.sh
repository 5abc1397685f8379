# Shared by ./test, ./demo and the helpers in this folder. Source it; it only defines things.

ZYR_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
ZYR_BUILD=$ZYR_ROOT/build
ZYR_LOGS=$ZYR_BUILD/logs
ZYR_JOBS=$(nproc)

die() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# stage LABEL LOG COMMAND...: one line with the label, the outcome and the time taken. What the command
# prints goes to build/logs/LOG.log; of a failure the end of that log is shown. Returns the command's status.
# The command runs in a subshell with `set -e`, so a function may be given.
stage() {
  local label=$1 log=$ZYR_LOGS/$2.log started=$SECONDS status=0
  shift 2
  mkdir -p "$ZYR_LOGS"
  printf '%-44s' "$label"
  # Not `( ... ) || status=$?`: in such a list bash ignores `set -e`.
  set +e
  (set -e; "$@") >"$log" 2>&1 </dev/null
  status=$?
  set -e
  if [ "$status" -eq 0 ]; then
    printf ' ok %5d s\n' $((SECONDS - started))
  else
    printf ' FAILED %d s (%s)\n' $((SECONDS - started)) "${log#"$ZYR_ROOT"/}"
    stage_failure "$log"
  fi
  return "$status"
}

# What is shown of the log of a failed stage. ./test replaces it where it knows better.
stage_failure() {
  tail -n 40 "$1" | sed 's/^/    /'
}

# packages_of GROUP...: the names in packages.txt that belong to these groups.
packages_of() {
  local group
  for group in "$@"; do
    awk -v group="$group" '$1 !~ /^#/ && $2 == group { print $1 }' "$ZYR_ROOT/scripts/packages.txt"
  done
}

missing_packages() {
  local package
  for package in $(packages_of "$@"); do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
  done
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "needs root or sudo: $*"
    return 1
  fi
}

install_packages() {
  as_root apt-get -q -o Acquire::Retries=3 update
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Acquire::Retries=3 \
    -o Dpkg::Use-Pty=0 install --no-install-recommends "$@"
}

# need_packages GROUP...: installs what is missing of these groups; a stage only where there is something to do.
need_packages() {
  local missing
  missing=$(missing_packages "$@")
  [ -z "$missing" ] && return 0
  # shellcheck disable=SC2086  # one word a package
  stage "install $(wc -w <<<"$missing") packages" packages install_packages $missing
}

# build_preset PRESET [TARGET...]: configures and builds it in build/PRESET.
build_preset() {
  local preset=$1
  shift
  cd "$ZYR_ROOT"
  cmake --preset "$preset"
  cmake --build --preset "$preset" --parallel "$ZYR_JOBS" ${1:+--target "$@"}
}

# triplet_of ARCH: the MinGW name of x64 or x86.
triplet_of() {
  case $1 in
    x64) echo x86_64-w64-mingw32 ;;
    x86) echo i686-w64-mingw32 ;;
    *) die "no such architecture: $1" ;;
  esac
}

# once LOCKFILE COMMAND...: runs the command while no other process holds the lock.
once() {
  local lock=$1 fd
  shift
  mkdir -p "$(dirname "$lock")"
  exec {fd}>"$lock"
  flock "$fd"
  local status=0
  "$@" {fd}>&- || status=$?
  exec {fd}>&-
  return "$status"
}
