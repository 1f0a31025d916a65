#!/usr/bin/env bash
# check_samples.sh COMMAND: runs the samples of docs/command.md, the lines "$ …" of its code blocks, one
# after another in a scratch directory, and compares what they print with what follows there. Times and
# limits by memory are not compared, and a line "..." takes the place of any lines. Prints the samples that
# differ; the exit status is then 1.
set -euo pipefail
command=$(realpath "$1")
root=$(cd "$(dirname "$0")/.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
ln -s "$root/data" data
korvel() { stdbuf -oL "$command" "$@"; } # in the order of a terminal

# What the samples read and no sample writes.
printf '%s\n' 5 '0 0 0' '6 0 0' '0 6 0' '0 0 6' '1 1 1' 5 '0 1 2' '0 1 3' '0 2 3' '1 2 9' '1 1 2' \
    1 '5 80 .5 .5' '0 1 2 3 4' > broken.model
printf '%s\n' 12 '0 0 0' '6 0 0' '0 6 0' '0 0 0' '6 0 0' '0 0 6' '0 0 0' '0 6 0' '0 0 6' '6 0 0' '0 6 0' \
    '0 0 6' 4 '0 1 2' '3 4 5' '6 7 8' '9 10 11' 1 '4 80 .5 .5' '0 1 2 3' > scan.model
printf '%s\n' 1 3 '0 0' '10 1;5' '5 5' > broken.curves
printf '%s\n' '{"type": "Feature", "properties": {"name": "Lea"}, "geometry": {"type": "Polygon",' \
    '"coordinates": [[[7.5, 46], [7.5, 47], [8.25, 46, 612], [7.5, 46]]]}}' > lands.geojson
strokes=1200
{
    echo $((2 * strokes))
    for ((i = 1; i <= strokes; ++i)); do
        echo "2 0 $((10 * i)) 99999 $((10 * i)) 2 $((10 * i)) 0 $((10 * i)) 99999"
    done
} > grid.curves

masked() { sed -E 's/[0-9.]+ ms/T ms/g; s/more than [0-9]+ crossings/more than N crossings/'; }
matches() { # EXPECTED ACTUAL
    awk 'NR == FNR {expected[++n] = $0; next}
         {actual[++m] = $0}
         function fits(i, j) { # from line i of the one and j of the other on
             for (; i <= n && expected[i] != "..."; ++i)
                 if (j > m || expected[i] != actual[j++])
                     return 0
             if (i > n)
                 return j > m
             for (; j <= m + 1; ++j)
                 if (fits(i + 1, j))
                     return 1
             return 0
         }
         END {exit !fits(1, 1)}' "$1" "$2"
}

checked=0 failed=0 line=
check_sample() {
    [[ $line ]] || return 0
    checked=$((checked + 1))
    (eval "$line") 2>&1 | masked > actual || true
    if ! matches expected actual; then
        printf 'docs/command.md: $ %s\n' "$line"
        diff expected actual | head -n 20 || true
        failed=1
    fi
}
while IFS= read -r text; do
    if [[ $text == '```'* || $text == '$ '* ]]; then
        check_sample
        line=
        : > expected
    fi
    if [[ $text == '$ '* ]]; then
        line=${text#'$ '}
    else
        masked <<< "$text" >> expected
    fi
done < "$root/docs/command.md"
echo "$checked samples checked"
exit "$failed"
