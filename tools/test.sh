#!/usr/bin/env bash
# Builds the libraries, the command, the examples and the tests, and runs all tests.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh command workbench tests
cmake --preset release -DKORVEL_BUILD_BENCH=OFF
cmake --build --preset release
ctest --preset release -j "$(nproc)"

# Loading and unloading, and the list of exported operations, need the shared library.
cmake --preset shared -DKORVEL_BUILD_BENCH=OFF
cmake --build --preset shared --target module_tests
ctest --preset shared -R '^(module\.LoadedModule|architecture)'
