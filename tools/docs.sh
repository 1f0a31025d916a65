#!/usr/bin/env bash
# Makes the API reference of the headers that a host can include, with the pages in docs/, in
# build/docs/html. Warnings are errors. Installs Doxygen unless it is there.
set -euo pipefail
cd "$(dirname "$0")/.."

command -v doxygen > /dev/null || tools/install_packages.sh doxygen
tools/check_quotes.sh

reachable() { # HEADER…: these and what they include of ours, each once
    local new=("$@") all=()
    while ((${#new[@]})); do
        all+=("${new[@]}")
        mapfile -t new < <(sed -n 's/^#include "\(.*\)"$/\1/p' "${new[@]}" | sort -u |
            grep -vxFf <(printf '%s\n' "${all[@]}") || true)
    done
    printf '%s\n' "${all[@]}"
}

mkdir -p build/docs
{ cat docs/Doxyfile && printf 'INPUT += %s\n' $(reachable korvel/module/korvel.h kit/kit.h); } | doxygen -
echo "build/docs/html/index.html"
