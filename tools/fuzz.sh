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

# Runs one program; its exit status is the result.
fuzz() {
    local target=$1 status=0
    local seeds=$root/tests/fuzz/corpus/$target
    local found=$root/build/fuzz/found/$target
    local grown=$root/build/fuzz/grown/$target # inputs from previous runs that reach more code
    mkdir -p "$found" "$grown"
    # The library writes files into the current directory.
    local run log
    run=$(mktemp -d)
    log=$run/log
    local program=$root/build/fuzz/tests/fuzz/fuzz_$target
    (
        cd "$run"
        if ((seconds == 0)); then
            find "$seeds" "$found" -type f -print0 | xargs -0 "$program" "${limits[@]}"
        else
            "$program" "${limits[@]}" -max_total_time="$seconds" -print_final_stats=1 \
                -artifact_prefix="$found/" "$grown" "$seeds"
        fi
    ) > "$log" 2>&1 || status=$?
    local runs coverage
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    coverage=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1 || true)
    printf '%-12s %s\n' "$target" "${runs:+$runs executions, }${coverage:-replayed}"
    if ((status != 0)); then
        tail -n 60 "$log"
    fi
    rm -rf "$run"
    return "$status"
}

failed=()
await() {
    wait "${pids[0]}" || failed+=("${running[0]}")
    pids=("${pids[@]:1}") running=("${running[@]:1}")
}
pids=() running=() # in order of their starts, at most one for each processor
for target in "${targets[@]}"; do
    fuzz "$target" &
    pids+=($!) running+=("$target")
    ((${#pids[@]} < $(nproc))) || await
done
while ((${#pids[@]})); do
    await
done

if ((${#failed[@]})); then
    echo "failed: ${failed[*]}" >&2
    exit 1
fi
