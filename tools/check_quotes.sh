#!/usr/bin/env bash
# Checks that code in docs/*.md which names its source is what the source contains. In a page, a line
# "<!-- quotes FILE: NAME -->" precedes the code block; in FILE, the code is between two lines
# "// [NAME]". Prints the quotes that differ; the exit status is then 1.
set -euo pipefail
cd "$(dirname "$0")/.."

quoted() { # PAGE NAME: the first code block after the line that names the quote
    awk -v name=": $2 -->" 'index($0, "<!-- quotes ") && index($0, name) {found = 1}
        found && /^```/ {if (inside) exit; inside = 1; next}
        inside' "$1"
}
source_of() { # FILE NAME
    awk -v mark="// [$2]" '$0 == mark {inside = !inside; next} inside' "$1"
}

checked=0
failed=0
while IFS=' ' read -r page file name; do
    checked=$((checked + 1))
    if [ -z "$(source_of "$file" "$name")" ] ||
        ! diff <(quoted "$page" "$name") <(source_of "$file" "$name") > /dev/null; then
        echo "$page: the quote \"$name\" differs from $file"
        failed=1
    fi
done < <(grep -HoE '^<!-- quotes [^:]+: .+ -->$' docs/*.md |
    sed -E 's/^([^:]+):<!-- quotes ([^:]+): (.+) -->$/\1 \2 \3/')
echo "$checked quotes checked"
exit "$failed"
