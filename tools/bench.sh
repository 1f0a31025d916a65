#!/usr/bin/env bash
# Lets korvel and other libraries do the same jobs on the same input and prints how long each took.
# --quick takes small inputs; names of groups (regions, triangles, models, merging) run only those.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh libcgal-dev
cmake --preset release -B build/bench -DKORVEL_BUILD_PEERS=ON \
    -DKORVEL_BUILD_APPS=OFF -DKORVEL_BUILD_TESTS=OFF
cmake --build build/bench --target korvel_compare
build/bench/bench/compare/korvel_compare "$@"
