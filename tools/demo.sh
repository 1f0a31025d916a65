#!/usr/bin/env bash
# Builds the korvel command and lets it work on the sample maps; the results go to out/.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh
cmake --preset release
cmake --build --preset release --target korvel_command
korvel=build/release/host/korvel
mkdir -p out

# One unit of x is a longer way than one of y on the maps of the United States, and far islands would
# leave most of the page empty: the pictures show the mainland in its usual shape.
usa=(--view 14500,-75000,31500,-45500 --stretch 3.3)
world=(--stretch 2)

demo() {
    local map=$1
    shift
    "$korvel" regions "data/$map.curves" -o "out/$map.regions" --picture "out/$map.png" "$@"
    "$korvel" triangles "data/$map.curves" -o "out/$map.triangles" \
        --picture "out/$map-triangles.png" "$@"
}
demo us-states "${usa[@]}"
demo world-110m "${world[@]}"

echo
echo "pictures:"
ls -1 "$PWD"/out/*.png
