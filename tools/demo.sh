#!/usr/bin/env bash
# Builds the korvel command and lets it work on the sample maps: regions, triangles, solids, their
# sections and views. The results go to out/.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh command
# A new build tree leaves out what only the tests and benchmarks need; tools/test.sh adds the tests.
if [[ ! -f build/release/build.ninja ]]; then
    cmake --preset release -DKORVEL_BUILD_MAN=OFF -DKORVEL_BUILD_TESTS=OFF -DKORVEL_BUILD_BENCH=OFF
fi
cmake --build --preset release --target korvel_command
korvel=build/release/apps/command/korvel
mkdir -p out

# One unit of x is a longer way than one of y on the maps of the United States, and far islands would
# leave most of the page empty: the pictures show the mainland in its usual shape.
usa=(--view 14500,45500,31500,75000 --stretch 3.3)
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

# Every state a body, the country cut from coast to coast, and a ball cut through its middle.
"$korvel" solid data/us-states.curves --levels 0,3000 -o out/us-states.model
"$korvel" info out/us-states.model > out/us-states.info
head -n 8 out/us-states.info
"$korvel" section out/us-states.model --x 60000 -o out/us-states.section \
    --picture out/us-states-section.png --size 1600x600
"$korvel" starter ball --center 0,0,100 --size 50 --rounds 3 -o out/ball.model
"$korvel" section out/ball.model --y 10 --picture out/ball-section.png --size 800x800
"$korvel" check out/us-states.model

# The same states in their usual shape, seen from the south; the ball turning once;
# and a click on it.
"$korvel" solid data/us-states.curves --levels 0,1000 --unit 0.3125,1 -o out/us-states-view.model
"$korvel" view out/us-states-view.model --angles 10,-45 --view -109000,-6500,-57400,18700 \
    --picture out/us-states-view.png
"$korvel" view out/ball.model --edges --box --turntable 12 --size 400x400 --picture out/ball.png
"$korvel" view out/ball.model --edges --pick 19,12.5 --view 0,-10,40,30 --size 800x800 \
    --picture out/ball-pick.png

echo
echo "pictures:"
ls -1 "$PWD"/out/*.png
