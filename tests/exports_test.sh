#!/bin/bash
# exports_test.sh LIBRARY - the library exports exactly the methods in vtables.txt and the names in exports.txt, each with
# its version.
set -euo pipefail
export LC_ALL=C
tests=$(dirname "$0")
expected() {
    awk '/^#/ || !NF { next } $3 == "works" || $3 == "no-op" { print $4 }' "$tests/vtables.txt"
    awk '/^#/ || !NF { next } { print $1 }' "$tests/exports.txt"
}
exported() {
    nm -D --defined-only --format=posix "$1" | awk '$2 != "A" { print $1 }' # symbols of kind A are the versions themselves
}
diff --unified=0 --label expected --label exported \
    <(expected | sed '/@/!s/$/@@KELXMLLIB_1.0/' | sort -u) <(exported "$1" | sort -u)
