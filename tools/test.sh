#!/usr/bin/env bash
# Builds everything and runs all tests.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh
cmake --preset release
cmake --build --preset release
ctest --preset release
