#!/bin/bash
# examples_test.sh PYTHON HOST_PY LIBRARIES NUMBER_ELEMENTS - the host in Python leaves a document, which the one in C++
# takes up; a file that cannot be read is reported.
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$1" "$2" "$3" >/dev/null
[ -z "$(ls)" ] # nothing is written that nobody asked for
"$1" "$2" "$3" -o shelf.xml
if "$1" "$2" /none 2>errors.txt; then exit 1; fi
[ "$(wc -l <errors.txt)" = 1 ] && grep -q /none errors.txt
"$4" shelf.xml book numbered.xml
[ "$(grep -c 'copies="3"' numbered.xml)" = 2 ]
[ "$(grep -o 'number="[^"]*"' numbered.xml | tr '\n' ' ')" = 'number="1" number="2" ' ]
grep -q Tides numbered.xml
if "$4" none.xml book numbered.xml 2>errors.txt; then exit 1; fi
grep -q "loading 'none.xml'.*no such file" errors.txt
