#!/bin/bash
# binaries_test.sh READELF OBJDUMP HARDENED FOLDER... - every program and library in the folders is loaded safely. If
# HARDENED is yes, the compiler must have hardened the code too.
set -eu
readelf=$1 objdump=$2 hardened=$3
shift 3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
complain() { echo "$*"; failed=1; }
# expect_landing FILE FUNCTION expects control-flow protection: the first instruction of the function must mark the
# function as a target of indirect calls.
expect_landing() {
  "$objdump" -d --no-show-raw-insn --disassemble="$2" "$1" >"$work/code"
  grep -A 1 "<$2>:" "$work/code" | grep -qE 'endbr64|bti|paciasp' || complain "$1: $2 must have control-flow protection"
}

files=0
: >"$work/imports"
while IFS= read -r -d '' file; do
  [ "$(head -c 4 "$file" | tail -c 3)" = ELF ] || continue
  files=$((files + 1))
  "$readelf" -dlW "$file" >"$work/headers"
  paths=$(sed -nE 's/.*\((RUNPATH|RPATH)\).*\[(.*)\].*/:\2:/p' "$work/headers")
  # To the loader, an empty entry means the current directory. A relative entry depends on the current directory too.
  [[ ! $paths =~ :[^/$] ]] || complain "$file: must search for libraries in absolute paths only, not in '$paths'"
  grep -q GNU_RELRO "$work/headers" || complain "$file: must have RELRO"
  grep -qE '\(FLAGS_1\).*\bNOW\b' "$work/headers" || complain "$file: must bind all symbols when it is loaded"
  "$readelf" -W --dyn-syms "$file" >>"$work/imports"
  if [ "$hardened" = yes ]; then
    case $file in
      */libKelXmlLib.so*) expect_landing "$file" DllMain ;;
      */libKelComWrapper.so*) expect_landing "$file" SysAllocString ;;
    esac
  fi
done < <(find "$@" -type f -print0)

[ "$files" -ge 3 ] || complain "$*: must contain at least 3 programs and libraries, not $files"
[ "$hardened" = no ] || grep -qE ' __[a-z]+_chk(@| |$)' "$work/imports" || complain "$*: _FORTIFY_SOURCE must check some calls"
exit $failed
