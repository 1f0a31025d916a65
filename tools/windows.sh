#!/usr/bin/env bash
# Cross-compiles everything for Windows with mingw-w64, and runs all tests under Wine, on a display in
# memory.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh command windows
cmake --preset windows
cmake --build --preset windows

# Made before the tests, which run side by side. A server without a display would keep its null driver.
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=d" WINEPREFIX=$PWD/build/wine
xvfb-run -a sh -c '
    wineserver -k || true
    wineboot --init
    ctest --preset windows -j "$(nproc)"
    status=$?
    wineserver -k
    exit $status'
