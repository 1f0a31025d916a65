#!/usr/bin/env bash
# check_operations.sh LIBRARY: checks the table "Where each operation is" in docs/architecture.md against
# the shared library. Prints exported operations that the table does not list, files that do not exist or
# do not define the operation, and rows of operations that are not exported; the exit status is then 1.
set -euo pipefail
library=$(realpath "$1")
cd "$(dirname "$0")/.."

# One "class::operation file" on each line; free functions have the class "-".
listed() {
    awk '/^## / {in_table = /^## Where each operation is/}
         in_table && /^\| `/ {
             n = split($0, names, "`")
             for (i = 4; i < n - 2; i += 2)
                 print (names[2] == "-" ? "" : names[2] "::") names[i], names[n - 1]
         }' docs/architecture.md
}
exported() {
    nm -DC --defined-only "$library" | sed -nE 's/^[0-9a-f]+ T ([^(]+)\(.*/\1/p' | sort -u
}

problems=$(
    join -v 2 <(listed | cut -d ' ' -f 1 | sort -u) <(exported) | sed 's/$/ is not listed/'
    join -v 1 <(listed | cut -d ' ' -f 1 | sort -u) <(exported) | sed 's/$/ is not exported/'
    listed | while read -r operation file; do
        grep -qsF "${operation##*::}(" "korvel/$file" || echo "korvel/$file does not define $operation"
    done
)
echo "$(exported | wc -l) operations checked"
[ -z "$problems" ] || { echo "$problems"; exit 1; }
