#!/usr/bin/env bash
# workbench.sh [FILE…]: installs what is missing, builds the desktop program, and starts it with the files.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)

(
    cd "$here"
    tools/install_packages.sh command workbench
    # A new build tree leaves out what only the tests and benchmarks need.
    if [[ ! -f build/release/build.ninja ]]; then
        cmake --preset release -DKORVEL_BUILD_WORKBENCH=ON -DKORVEL_BUILD_MAN=OFF \
            -DKORVEL_BUILD_TESTS=OFF -DKORVEL_BUILD_BENCH=OFF
    else
        cmake build/release -DKORVEL_BUILD_WORKBENCH=ON
    fi
    cmake --build --preset release --target korvel_workbench
)
exec "$here/build/release/apps/workbench/korvel-workbench" "$@"
