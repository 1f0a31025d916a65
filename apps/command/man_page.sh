#!/usr/bin/env bash
# man_page.sh KORVEL: prints the manual page of the korvel command, made from its help by help2man.
# Each subcommand is a section of its own.
set -euo pipefail
korvel=$1
version=$("$korvel" --version)

page_of() { # HELP-OPTION [OPTION-OF-HELP2MAN…]
    help2man --no-info --name "regions, triangles and solids from networks of curves" \
        --version-string "${version#korvel }" --help-option "$1" "${@:2}" "$korvel" |
        # Indented lines of the help keep their line breaks.
        awk '/^\./ && inside { print ".fi"; inside = 0 }
             { print }
             /^\.IP$/ { print ".nf"; inside = 1 }
             END { if (inside) print ".fi" }'
}

sections=$(mktemp)
trap 'rm -f "$sections"' EXIT
"$korvel" --help | awk '/^Commands:/ { listed = 1; next } /^$/ { listed = 0 } listed { print $1 }' |
    while read -r command; do
        printf '[korvel %s]\n' "$command"
        page_of "$command --help" | awk '/^\.SH SYNOPSIS/ { inside = 1; next }
                                         !inside || /^\.SH DESCRIPTION/ { if (inside) print ".PP"; next }
                                         { sub(/^\.SH /, ".SS "); print }'
    done > "$sections"
page_of --help --include "$sections"
