#!/usr/bin/env bash
# Checks every include of our own headers against the table "Allowed includes" in docs/architecture.md.
# Prints what the table does not allow and folders that do not exist; the exit status is then 1.
set -euo pipefail
cd "$(dirname "$0")/.."

grep -rn --include='*.h' --include='*.cpp' '^#include "' korvel kit apps examples tests bench |
    awk '
        function folder_of(path) { # the deepest listed one
            while (sub(/\/[^\/]*$/, "", path) && !(path in listed));
            return path in listed ? path : ""
        }
        # "x/*" allows x and all below it.
        function is_allowed(from, to,    i) {
            if (from == to)
                return 1
            for (i = 1; i <= count[from]; ++i)
                if (to == allowed[from, i] ||
                    (allowed[from, i] ~ /\/\*$/ &&
                     index(to "/", substr(allowed[from, i], 1, length(allowed[from, i]) - 1)) == 1))
                    return 1
            return 0
        }
        function report(message) {
            print message
            failed = 1
        }

        # The table: a folder, and what its files may include besides their own folder.
        FNR == NR {
            if (/^## /)
                in_table = /^## Allowed includes/
            if (in_table && /^\| `/) {
                n = split($0, names, "`")
                listed[names[2]] = 1
                for (i = 4; i < n; i += 2)
                    allowed[names[2], ++count[names[2]]] = names[i]
            }
            next
        }
        {
            split($0, part, ":")
            split($0, quoted, "\"")
            from = folder_of(part[1])
            to = folder_of(quoted[2])
            if (from == "" || to == "")
                report(part[1] ":" part[2] ": " (from == "" ? part[1] : quoted[2]) " is in no listed folder")
            else if (!is_allowed(from, to))
                report(part[1] ":" part[2] ": " from " may not include " quoted[2])
            ++checked
        }
        END {
            for (folder in listed)
                if (system("test -d " folder) != 0)
                    report("docs/architecture.md lists " folder ", which does not exist")
            print checked " includes checked"
            exit failed || checked == 0
        }' docs/architecture.md -
