#!/usr/bin/env bash
# Installs the Debian packages that a build needs, and those named as arguments, unless they are
# there. Needs root, or sudo, only when something is missing.
set -euo pipefail

packages=(
    g++ cmake ninja-build pkg-config
    libcairo2-dev libcli11-dev libgeos-dev
    libgl-dev libegl-dev libgl1-mesa-dri
    libgtest-dev libgmock-dev libbenchmark-dev
    "$@"
)

if ! command -v dpkg-query > /dev/null; then
    echo "install_packages.sh: not a Debian system; see that these are there: ${packages[*]}" >&2
    exit 0
fi

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2> /dev/null || true)
    [[ $status == installed* ]] || missing+=("$package")
done
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
    as_root=(sudo)
fi
echo "installing ${missing[*]}"
"${as_root[@]}" apt-get -qq update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -qq install -y --no-install-recommends "${missing[@]}" > /dev/null
