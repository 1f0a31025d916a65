#!/usr/bin/env bash
# Builds the korvel command and lets it work on the sample maps; the results go to out/.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh
cmake --preset release
cmake --build --preset release --target korvel_command
korvel=build/release/host/korvel
mkdir -p out

for map in us-states world-110m; do
    curves=data/$map.curves
    "$korvel" regions "$curves" -o "out/$map.regions" --picture "out/$map.png"
    "$korvel" triangles "$curves" -o "out/$map.triangles" --picture "out/$map-triangles.png"
done

echo
echo "pictures:"
ls -1 "$PWD"/out/*.png
