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

# Every state a region, triangulated, and a body; the country cut from coast to coast. The pictures show the mainland
# in its usual shape: on this map a unit of x is a longer way than one of y, and far islands leave most of it empty.
states=(data/us-states.curves --view 14500,45500,31500,75000 --stretch 3.3)
"$korvel" regions "${states[@]}" -o out/us-states.regions --picture out/us-states.png
"$korvel" triangles "${states[@]}" -o out/us-states.triangles --picture out/us-states-triangles.png
"$korvel" solid data/us-states.curves --levels 0,3000 -o out/us-states.model
"$korvel" info out/us-states.model > out/us-states.info
head -n 8 out/us-states.info
"$korvel" section out/us-states.model --plane y=60000 -o out/us-states.section \
    --picture out/us-states-section.png --size 1600x600
"$korvel" check out/us-states.model

# The same states in their usual shape, seen from the south.
"$korvel" solid data/us-states.curves --levels 0,1000 --unit 0.3125,1 --level-unit 1 -o out/us-states-view.model
"$korvel" view out/us-states-view.model --angles 10,-45 --view -109000,-6500,-57400,18700 \
    --picture out/us-states-view.png

# The states from a GeoJSON in longitude and latitude: raised in metres, and cut from coast to coast.
"$korvel" solid data/us-states.geojson --levels 0,200000 -o out/us-states-metres.model
"$korvel" section out/us-states-metres.model --plane y=0 -o out/us-states-metres.geojson \
    --picture out/us-states-metres-section.png

# The pictures of the documents.
tools/gallery.sh "$korvel" out

echo
echo "pictures:"
ls -1 "$PWD"/out/*.png
