#!/usr/bin/env bash
# code_blocks.sh DOCUMENT [NUMBER]: prints the C++ code of a document as a program. With NUMBER that is
# one block, a complete program, counted from 1; without it all blocks: the first contains the includes,
# the others are the body of main.
set -euo pipefail
awk -v wanted="${2:-0}" '
    /^```cpp$/ {
        inside = 1
        ++block
        if (wanted == 0 && block == 2) print "int main() try {"
        next
    }
    /^```$/ { inside = 0; next }
    inside && (wanted == 0 || wanted == block)
    END {
        if (block == 0 || wanted > block) exit 1
        if (wanted == 0) print "} catch (const std::exception& error) {\n    std::puts(error.what());\n    return 1;\n}"
    }' "$1"
