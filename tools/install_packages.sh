#!/usr/bin/env bash
# install_packages.sh [GROUP|PACKAGE]…: installs the Debian packages that a build of the exact classes
# needs, those of the groups named (command, workbench, tests, bench, windows, fuzz) and the further packages named,
# unless they are there. Needs root, or sudo, only when something is missing.
set -euo pipefail

packages=(g++ cmake ninja-build libgl-dev)
for name in "$@"; do
    case $name in
        command) # with the kit, its modules and what draws without a window
            packages+=(pkg-config libcairo2-dev libcli11-dev nlohmann-json3-dev libegl-dev
                libgl1-mesa-dri libgdal-dev libproj-dev) ;;
        tests) # with the manual page and the Debian packages of the command
            packages+=(libgtest-dev libgmock-dev libgeos-dev help2man groff-base dpkg-dev file
                python3-jsonschema gdal-bin assimp-utils libopenmesh-dev) ;;
        workbench) # with a display in memory, on which its tests run
            packages+=(qt6-base-dev libqt6opengl6-dev libzip-dev xvfb xauth fonts-dejavu-core) ;;
        bench) packages+=(libbenchmark-dev libgeos-dev) ;;
        windows) # cross-compiling, and running the result with its windows and OpenGL
            packages+=(g++-mingw-w64-x86-64-posix googletest wine64 wine xvfb xauth libgl1
                libgl1-mesa-dri libxcomposite1 libxrender1 libxi6 libxrandr2 fonts-dejavu-core
                python3) ;;
        fuzz) packages+=(clang-14 libclang-rt-14-dev) ;;
        *) packages+=("$name") ;;
    esac
done

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
