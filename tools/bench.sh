#!/usr/bin/env bash
# Compares the speed of korvel with that of CGAL, GEOS, OpenMesh and ogr2ogr, or of another checkout of korvel.
#
#   tools/bench.sh [--write] [--quick] [GROUP…]
#       Prints the table of docs/performance.md; --write also replaces it there. Groups: regions,
#       triangles, models, merging, convert, meshes; all if none is named. --quick uses small inputs.
#   tools/bench.sh --against DIR [FILTER]
#       Runs each benchmark that this checkout and the one in DIR have in common (all, or those whose
#       names match the regular expression) in both in turn, five times. Prints the medians of
#       processor time. The exit status is 1 when one is more than 10 % slower than in DIR.
set -euo pipefail
cd "$(dirname "$0")/.."

compare_with_peers() {
    local write=false arguments=() argument
    for argument in "$@"; do
        if [[ $argument == --write ]]; then write=true; else arguments+=("$argument"); fi
    done
    tools/install_packages.sh bench libcgal-dev libopenmesh-dev pkg-config gdal-bin
    cmake --preset release -B build/bench -DKORVEL_BUILD_PEERS=ON -DKORVEL_BUILD_TESTS=OFF \
        -DKORVEL_BUILD_APPS=OFF -DKORVEL_WITH_{CAIRO,EGL,GDAL,PROJ}=OFF
    cmake --build build/bench --target korvel_compare
    local table
    table=$(mktemp)
    trap 'rm -f "$table"' EXIT
    {
        describe_machine
        build/bench/bench/compare/korvel_compare "${arguments[@]}"
    } | tee "$table"
    if $write; then
        write_table "$table"
    fi
}

describe_machine() {
    local cpu system
    cpu=$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)
    system=$(. /etc/os-release && echo "$PRETTY_NAME")
    printf '%s; %s × %s; %s, g++ %s, CGAL %s, GEOS %s, OpenMesh %s, GDAL %s:\n\n' "$(LC_ALL=C date '+%-d %B %Y')" "$(nproc)" \
        "$cpu" "$system" "$(g++ -dumpfullversion)" "$(version_of libcgal-dev)" "$(version_of libgeos-dev)" \
        "$(version_of libopenmesh-dev)" "$(version_of gdal-bin)"
}

version_of() {
    dpkg-query --show --showformat '${source:Upstream-Version}' "$1"
}

# Replaces what is between the two markers of docs/performance.md.
write_table() {
    local page
    page=$(awk -v table="$1" '
        /^<!-- end of table -->/ { inside = 0 }
        !inside { print }
        /^<!-- table/ { inside = 1; print ""; while ((getline line < table) > 0) print line; print "" }
    ' docs/performance.md)
    printf '%s\n' "$page" > docs/performance.md
}

compare_with_checkout() {
    local other=$1 filter=${2:-.} name round side slower=0
    declare -A programs=([old]=$other/build/release/bench/korvel_bench [new]=build/release/bench/korvel_bench)
    tools/install_packages.sh command tests bench
    build_benchmarks "$other"
    build_benchmarks .
    printf '%-50s %12s %12s %7s\n' benchmark old new ratio
    for name in $(comm -12 <(names_in "${programs[old]}" "$filter") <(names_in "${programs[new]}" "$filter")); do
        declare -A times=([old]="" [new]="")
        for round in 1 2 3 4 5; do
            for side in old new; do
                times[$side]+="$(time_of "${programs[$side]}" "$name")"$'\n'
            done
        done
        report "$name" "$(median "${times[old]}")" "$(median "${times[new]}")" || slower=$((slower + 1))
    done
    echo "$slower more than 10 % slower"
    ((slower == 0))
}

build_benchmarks() {
    (cd "$1" && cmake --preset release && cmake --build --preset release --target korvel_bench) > /dev/null
}

names_in() {
    "$1" --benchmark_list_tests --benchmark_filter="$2" | sort
}

# Processor time in the unit of the benchmark.
time_of() {
    "$1" --benchmark_filter="^$2\$" --benchmark_min_time=0.2 --benchmark_format=csv 2> /dev/null |
        awk -F, -v name="\"$2\"" '$1 == name { print $4 }'
}

median() {
    sort -g <<< "${1%$'\n'}" | sed -n 3p
}

report() {
    awk -v name="$1" -v old="$2" -v new="$3" 'BEGIN {
        printf "%-50s %12.4g %12.4g %7.2f%s\n", name, old, new, new / old, (new > 1.1 * old ? "  slower" : "")
        exit (new > 1.1 * old)
    }'
}

if [[ ${1:-} == --against ]]; then
    compare_with_checkout "${@:2}"
else
    compare_with_peers "$@"
fi
