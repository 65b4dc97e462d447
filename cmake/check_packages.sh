#!/bin/bash
# check_packages.sh - builds the Debian packages twice, in environments as different as possible, and fails if the two
# builds differ in any byte. Then checks, installs, tests and removes the packages. ./test runs this script in a
# disposable Debian.
set -euo pipefail
cd "$(dirname "$0")/.."
. cmake/build.sh
source=$PWD work=/tmp/packages
rm -rf $work
mkdir -p $work/first $work/second

# step NAME COMMAND... - runs the command, and prints its output and the time in seconds
step() {
  local start=$SECONDS code
  printf '\n-- %s\n' "$1"
  set +e # if the subshell were the condition of an `if`, bash would ignore its `set -e`
  (set -e; "${@:2}")
  code=$?
  set -e
  [ $code -eq 0 ] || { echo "-- $1 FAILED"; return 1; }
  echo "-- $((SECONDS - start)) s"
}

# Builds the packages with the unchanged command from the README.
build_first() {
  cp -r "$source" $work/first/kelxmllib
  cd $work/first/kelxmllib
  bash -euc "$(grep -E '^ +apt-get .*dpkg-buildpackage' README.md)" >$work/first.log 2>&1 || { tail -40 $work/first.log; return 1; }
}
# The second build: in another directory, a year later, as another user with another umask, language and time zone.
build_second() {
  local folder=$work/second/a/longer/name
  id builder >/dev/null 2>&1 || useradd --create-home builder
  localedef -i tr_TR -f UTF-8 tr_TR.UTF-8
  mkdir -p $folder
  cp -r "$source" $folder/sources
  chown -R builder $work/second
  cd $folder/sources
  find . -exec touch -d 2001-02-03 {} +
  runuser -u builder -- env -i PATH="$PATH" HOME=/home/builder LC_ALL=tr_TR.UTF-8 TZ=Asia/Tokyo faketime '+400 days 5 hours' \
    bash -euc 'umask 077; dpkg-buildpackage -us -uc -b' >$work/second.log 2>&1 || { tail -40 $work/second.log; return 1; }
}
compare() {
  (cd $work/first && sha256sum ./*.deb) | tee $work/checksums
  cd $work/second/a/longer/name
  sha256sum --check --strict $work/checksums
}
lint() {
  lintian --allow-root --pedantic --fail-on error,warning,pedantic $work/first/*.changes
}
install() {
  apt-get install -y -qq --no-install-recommends $(ls $work/first/*.deb | grep -v dbgsym) >/dev/null
  # Ignore the exit code of hardening-check: it also depends on the C library's start files, and on whether a file calls
  # any function that has a fortified version. Instead, require three properties of each of the three files, and
  # fortified functions in at least one file.
  hardening-check "$(command -v kelxml)" /usr/lib/*/libKel*.so.? | tee $work/hardening || true
  [ "$(grep -cE '(Stack protected|Read-only relocations|Immediate binding): yes' $work/hardening)" = 9 ]
  grep -q 'Fortify Source functions: yes' $work/hardening
}
run_tests() {
  autopkgtest --quiet --summary-file=$work/summary $(ls $work/first/*.deb | grep -v dbgsym) "$source" -- null >$work/tests.log 2>&1 ||
    { tail -60 $work/tests.log; return 1; }
  cat $work/summary
}
remove() {
  apt-get purge -y -qq libkelxmllib1 libkelxmllib-dev libkelxmllib-doc kelxml >/dev/null
  [ -z "$(find /usr /etc -iname '*kelxml*' -o -iname '*KelCom*')" ]
}
step 'Building as the README says' build_first
need autopkgtest devscripts faketime fakeroot lintian locales
step 'Building in another environment' build_second
step 'Comparing the two builds' compare
step 'lintian' lint
step 'Installing' install
step 'debian/tests' run_tests
step 'Removing' remove
