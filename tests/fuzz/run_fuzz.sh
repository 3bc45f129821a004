#!/usr/bin/env bash
# run_fuzz.sh HARNESS WORKDIR SECONDS SEED...
# Replays every seed (files and folders) once, then fuzzes for SECONDS with
# the new inputs kept in WORKDIR/corpus. A crash, a sanitizer report, a run
# over five seconds or a broken promise of the reader fails the test and
# leaves the input in WORKDIR as crash-*, timeout-* or oom-*.
set -euo pipefail
harness=$1
work=$2
seconds=$3
shift 3
mkdir -p "$work/corpus" "$work/seeds"
rm -f "$work"/crash-* "$work"/timeout-* "$work"/oom-* "$work"/leak-*

# Seeds: whole files for the replay, and for large ones also slices of
# about 2 KB at line ends, which the fuzzer can mutate quickly.
replay=()
for s in "$@"; do
    if [ -d "$s" ]; then
        replay+=("$s")
    elif [ -f "$s" ]; then
        base=$(basename "$s")
        cp "$s" "$work/seeds/$base"
        if [ "$(stat -c %s "$s")" -gt 4096 ]; then
            split -C 2048 -d -a 3 "$s" "$work/seeds/$base.part-"
            # Keep a few slices from the start, the middle and the end.
            ls "$work/seeds/$base".part-* | awk 'NR % 25 != 1' | xargs -r rm -f
        fi
    fi
done
replay+=("$work/seeds")

opts=(-rss_limit_mb=2048 -artifact_prefix="$work/" -print_final_stats=1)
# The replay takes whole real files (MASTER.SCP holds 40000 calls), which
# the sanitizers make slow. The fuzzed inputs (4 KB at most) take
# milliseconds; five seconds still catches a loop that does not end, without
# failing an input that a loaded machine merely kept waiting.
echo "== replay of the seeds and the saved corpus"
"$harness" "${opts[@]}" -timeout=60 -runs=0 "$work/corpus" "${replay[@]}"
echo "== fuzzing for ${seconds}s"
"$harness" "${opts[@]}" -timeout=5 -max_len=4096 -max_total_time="$seconds" \
    "$work/corpus" "${replay[@]}"
