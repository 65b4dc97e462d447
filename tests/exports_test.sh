#!/bin/bash
# exports_test.sh LIBRARY - it exports exactly the methods in vtables.txt and the names in exports.txt, each in its version.
set -euo pipefail
export LC_ALL=C
tests=$(dirname "$0")
expected() {
    awk '/^#/ || !NF { next } $3 != "answers" && $3 != "refuses" { print $4 }' "$tests/vtables.txt"
    awk '/^#/ || !NF { next } { print $1 }' "$tests/exports.txt"
}
exported() {
    nm -D --defined-only --format=posix "$1" | awk '$2 != "A" { print $1 }' # the linker names versions with kind A
}
diff --unified=0 --label expected --label exported \
    <(expected | sed '/@/!s/$/@@KELXMLLIB_1.0/' | sort -u) <(exported "$1" | sort -u)
