#!/bin/bash
# headers_test.sh INCLUDE PKG_CONFIG COMPILER... - each compiler accepts the public headers without warnings in
# C++17 and newer.
set -eu
include=$1 pkg_config=$2
shift 2
headers=$(cd "$include" && printf '#include "%s"\n' */*.h)
qt=$("$pkg_config" --cflags Qt5Xml | sed 's/-I/-isystem /g')
for compiler in "$@"; do
  for standard in 17 20 2b; do
    "$compiler" -x c++ -std=c++$standard -fsyntax-only -fPIC -Wall -Wextra -Wpedantic -Werror -I "$include" $qt - <<<"$headers" ||
      { echo "$compiler must accept the public headers in C++$standard"; exit 1; }
  done
done
