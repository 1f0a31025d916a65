#!/usr/bin/env bash
# Builds everything and runs all tests.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh
cmake --preset release
cmake --build --preset release
ctest --preset release

# Loading and unloading, and the list of exported operations, need the shared library.
cmake --preset shared
cmake --build --preset shared --target module_tests
ctest --preset shared -R '^(module\.LoadedModule|architecture)'
