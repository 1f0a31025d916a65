#!/usr/bin/env bash
# Cross-compiles everything for Windows with mingw-w64, runs all tests under Wine, on a display in memory,
# and compares the korvel command with that of this system, which is built where there is a build of it.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh command windows
cmake --preset windows
cmake --build --preset windows

for native in build/{clang,shared,release}; do
    [[ ! -e $native/apps/command/korvel ]] || break
done
[[ -e $native/build.ninja ]] || cmake --preset release
cmake --build "$native" --target korvel_command

# Made before the tests, which run side by side. A server without a display would keep its null driver.
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=d" WINEPREFIX=$PWD/build/wine
xvfb-run -a sh -c '
    wineserver -k || true
    wineserver -p # until the end: programs that start while it ends by itself would fail
    wineboot --init
    ctest --preset windows -j "$(nproc)" --timeout 300
    status=$?
    python3 tests/windows/compare_commands.py "$1/apps/command/korvel" build/windows/bin/korvel.exe ||
        status=1
    wineserver -k
    exit $status' sh "$native"
