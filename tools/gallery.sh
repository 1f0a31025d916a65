#!/usr/bin/env bash
# gallery.sh KORVEL [OUT-DIR]: makes the pictures of the documents again, in docs/images unless another directory
# is given: runs the code blocks "```sh gallery" of docs/command.md one after another in a scratch directory and
# takes from it each picture that a document shows. The pictures that the guide and the examples show are taken
# from their programs, where KORVEL is in a build tree that has them.
set -euo pipefail
command=$(realpath "$1")
root=$(cd "$(dirname "$0")/.." && pwd)
out=$(realpath "${2:-$root/docs/images}")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
ln -s "$root/data" data

korvel() { "$command" "$@" --quiet; }
awk '/^```/ {block = $0; next} block == "```sh gallery"' "$root/docs/command.md" > commands
# shellcheck disable=SC1091
source ./commands

build=$(dirname "$command")/../..
if [[ -x $build/tests/guide ]]; then
    "$build/tests/guide" > /dev/null
fi
if [[ -x $build/examples/raise_and_cut ]]; then
    "$build/examples/raise_and_cut" gear.model gear.png gear-section.png > /dev/null
fi

mkdir -p "$out"
while read -r picture; do
    if [[ -f $picture ]]; then
        cp "$picture" "$out/"
    elif grep -q "images/$picture" "$root/docs/command.md"; then
        echo "docs/command.md: no command makes $picture" >&2
        exit 1
    elif [[ ! ${2:-} ]]; then
        echo "not made, its program is not built: $picture"
    fi
done < <(cat "$root/README.md" "$root"/docs/*.md | grep -oE 'images/[a-z0-9-]+\.png' | sed 's,.*/,,' | sort -u)
