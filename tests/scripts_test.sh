#!/bin/bash
# scripts_test.sh SOURCES KELXML - ./run and ./test find their own tree, and ./run accepts any file name. This test copies
# the scripts to a tree whose build.sh neither installs nor builds anything.
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tree=$work/main
mkdir -p "$tree/cmake" "$tree/build/release/bin" "$work/other/main/cmake"
cp "$1/run" "$1/test" "$tree"
ln -s "$2" "$tree/build/release/bin/kelxml"
echo 'need() { :; }; build() { :; }' >"$tree/cmake/build.sh"
echo 'echo planted; exit 1' >"$work/other/main/cmake/build.sh"
fail() { echo "$1"; cat "$work/output"; exit 1; }

cd "$work"
name="-it's a file.xml"
echo '<a><b/></a>' >"$name"
bash main/run "$name" >"$work/output" 2>&1 || fail "./run must accept '$name'"
command=$(sed -n 's/^\$ kelxml call /kelxml call /p' "$work/output")
eval "set -- \"$2\" $command" # types the command that ./run prints, as a user would
[ "$("$1" "${@:3}")" = 1 ] || fail "./run must print a command that a user can type: $command"

export CDPATH=$work/other
bash main/run "$name" >"$work/output" 2>&1 || fail './run must ignore CDPATH'
printf 'need() { echo "in $PWD"; exit; }\n' >"$tree/cmake/build.sh"
bash main/test code >"$work/output" 2>&1 || fail './test must ignore CDPATH'
grep -qx "in $tree" "$work/output" || fail "./test must run in $tree"
