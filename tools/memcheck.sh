#!/usr/bin/env bash
# Runs the test programs, and the commands that they start, under valgrind's memcheck. Prints its
# reports; the exit status is 0 when there are none.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh command tests bench valgrind
cmake --preset release
cmake --build --preset release
cmake --preset shared
cmake --build --preset shared --target module_tests

root=$PWD
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

failed=()
for program in build/release/tests/*_tests build/shared/tests/module_tests; do
    name=$(basename "$program")
    # Each process has a report file of its own, because tests read the output of commands. Shells
    # are traced too, because the commands are their child processes.
    run=$scratch/$name
    reports=$scratch/$name.reports
    mkdir "$run" "$reports"
    status=0
    (
        cd "$run"
        valgrind --quiet --leak-check=full --show-leak-kinds=definite \
            --errors-for-leak-kinds=definite --error-exitcode=99 \
            --suppressions="$root/tools/memcheck.supp" --log-file="$reports/%p" \
            --trace-children=yes \
            "$root/$program" --gtest_brief=1
    ) || status=$?
    if ((status != 0)) || [[ -n $(find "$reports" -type f -size +0) ]]; then
        failed+=("$name")
        find "$reports" -type f -size +0 -exec head -n 200 {} +
    fi
done

if ((${#failed[@]})); then
    echo "failed under memcheck: ${failed[*]}" >&2
    exit 1
fi
