#!/bin/bash
# bare.sh SUITE [STAGE...] - runs ./test on the committed tree in a Debian that has only bash and apt. ./test starts this
# script in new namespaces, so that all mounts and processes of the script end when the script ends or is killed.
set -euo pipefail
trap 'exit 143' INT TERM # without a handler, the first process of a namespace ignores signals
suite=$1
shift
unset CDPATH
cd "$(dirname "$0")/.."
root=$PWD/build/bare-$suite
mount -t proc proc /proc

# site LABEL - prints the mirror from which the host's apt gets packages with this label
site() {
  apt-get indextargets --format '$(LABEL)|$(SITE)' 'Created-By: Packages' |
    awk -F '|' -v label="$1" '$1 == label && !found { print $2; found = 1 }'
}
inside() {
  chroot "$root" env -i HOME=/root KEL_BARE=yes TERM="${TERM:-dumb}" PATH=/usr/sbin:/usr/bin:/sbin:/bin \
    DEBIAN_FRONTEND=noninteractive "${proxies[@]}" "$@"
}
mapfile -t proxies < <(env | grep -iE '^(https?|ftp|no)_proxy=')

apt-get update -qq
mirror=$(site Debian) security=$(site Debian-Security)
[ -n "$mirror" ] || { echo "./test --bare: no Debian in this system's apt sources" >&2; exit 1; }

if [ ! -d "$root" ]; then
  echo "Creating build/bare-$suite"
  rm -rf "$root.new"
  mkdir -p "$root.new"
  debootstrap --variant=minbase --include=ca-certificates "$suite" "$root.new" "$mirror" >build/bare-$suite.log ||
    { tail build/bare-$suite.log >&2; exit 1; }
  mv "$root.new" "$root"
fi
{
  echo "deb $mirror $suite main"
  echo "deb $mirror $suite-updates main"
  [ -z "$security" ] || echo "deb $security $suite-security main"
} >"$root/etc/apt/sources.list"
# Use the apt settings and keys of the host.
apt-config dump | grep -E '^Acquire::(https?|Check|Force|Languages|Retries)' >"$root/etc/apt/apt.conf.d/99host" || true
cp -rL /etc/apt/trusted.gpg.d "$root/etc/apt/"
for file in /etc/resolv.conf /etc/hosts /etc/ssl/certs/ca-certificates.crt; do
  [ ! -e $file ] || cp -L --remove-destination $file "$root$file"
done
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
inside apt-get update -qq
inside apt-get dist-upgrade -y -qq >/dev/null

[ -z "$(git status --porcelain)" ] || echo "Uncommitted changes are not tested"
rm -rf "$root/src"
mkdir "$root/src"
git archive HEAD | tar -x -C "$root/src"
inside /src/test "$@"
