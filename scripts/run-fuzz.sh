#!/usr/bin/env bash
# run-fuzz.sh PROGRAM SEEDS: one fuzz target for ZYR_FUZZ_SECONDS (5). The seeds are only read. An input that makes it
# fail is kept in build/fuzz/finds. For a long run by hand, which keeps what it learns in build/fuzz/corpus/<target>:
#   ZYR_FUZZ_SECONDS=3600 scripts/run-fuzz.sh build/fuzz/bin/<target> tests/fuzz/corpus/<target>
set -euo pipefail
. "$(dirname "$0")/common.sh"

program=$1 seeds=$2
name=${program##*/}
seconds=${ZYR_FUZZ_SECONDS:-5}
finds=$ZYR_BUILD/fuzz/finds
if [ "$seconds" -gt 60 ]; then
  corpus=$ZYR_BUILD/fuzz/corpus/$name
else
  corpus=$(mktemp -d)
  trap 'rm -rf "$corpus"' EXIT
fi
mkdir -p "$finds" "$corpus"
[ -d "$seeds" ] || seeds=
"$program" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
  -artifact_prefix="$finds/$name-" "$corpus" ${seeds:+"$seeds"}
