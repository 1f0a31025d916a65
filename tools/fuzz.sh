#!/usr/bin/env bash
# Builds and runs the fuzzing programs, each starting from its corpus. Inputs that make one fail are
# kept in build/fuzz/found/, and the exit status is then not 0.
#
#   tools/fuzz.sh [SECONDS] [TARGET…]     20 seconds for each target, all targets by default
#   tools/fuzz.sh 0                       replays the corpora and the inputs found in previous runs
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=20
if [[ ${1:-} =~ ^[0-9]+$ ]]; then
    seconds=$1
    shift
fi
targets=("$@")
if ((${#targets[@]} == 0)); then
    mapfile -t targets < <(ls tests/fuzz/corpus)
fi

tools/install_packages.sh command fuzz
cmake --preset fuzz
cmake --build --preset fuzz --target "${targets[@]/#/fuzz_}"

root=$PWD
export ASAN_OPTIONS=detect_leaks=1
export LSAN_OPTIONS=suppressions=$root/tools/leaks.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1
limits=(-timeout=20 -rss_limit_mb=2048 -max_len=4096)

failed=()
for target in "${targets[@]}"; do
    seeds=$root/tests/fuzz/corpus/$target
    found=$root/build/fuzz/found/$target
    grown=$root/build/fuzz/grown/$target # inputs from previous runs that reach more code
    mkdir -p "$found" "$grown"
    # The library writes files into the current directory.
    run=$(mktemp -d)
    log=$run/log
    program=$root/build/fuzz/tests/fuzz/fuzz_$target
    status=0
    (
        cd "$run"
        if ((seconds == 0)); then
            find "$seeds" "$found" -type f -print0 | xargs -0 "$program" "${limits[@]}"
        else
            "$program" "${limits[@]}" -max_total_time="$seconds" -print_final_stats=1 \
                -artifact_prefix="$found/" "$grown" "$seeds"
        fi
    ) > "$log" 2>&1 || status=$?
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    coverage=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1 || true)
    printf '%-12s %s\n' "$target" "${runs:+$runs executions, }${coverage:-replayed}"
    if ((status != 0)); then
        failed+=("$target")
        tail -n 60 "$log"
    fi
    rm -rf "$run"
done

if ((${#failed[@]})); then
    echo "failed: ${failed[*]}" >&2
    exit 1
fi
