#!/usr/bin/env bash
# Puts the sources of the libraries that orvsys.dll contains into the cache folder, as the distribution's own source
# packages with its patches, and prints the folder. Needs no root. All checkouts share it.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

suite=bookworm
packages='zlib bzip2 expat'
folder=$cache/sources-$suite-1

if [ -e "$folder/complete" ]; then
    printf '%s\n' "$folder"
    exit 0
fi

command -v dpkg-source >/dev/null || fail 'dpkg-source is missing' 'run: apt-get install dpkg-dev'
make_cache
exec 9>"$cache/sources.lock"
flock 9 # two checkouts may start on a fresh machine at once
if [ -e "$folder/complete" ]; then
    printf '%s\n' "$folder"
    exit 0
fi

say "fetching the sources of $packages (3 MB, once)"
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
[ -e $keyring ] || fail "$keyring is missing" 'run: apt-get install debian-archive-keyring'
mirror=$(debian_mirror)
private_apt "sources-$suite" "$(dpkg --print-architecture)" "deb-src [signed-by=$keyring] $mirror $suite main" \
    "deb-src [signed-by=$keyring] $mirror $suite-updates main"
rm -rf "$folder"
mkdir -p "$folder"
log=$cache/apt/sources-$suite/source.log
# shellcheck disable=SC2086  # the list is split on purpose
(cd "$folder" && APT_CONFIG=$apt_conf apt-get source $packages) >"$log" 2>&1 ||
    fail "cannot fetch the sources of $packages ($(tail -n 1 "$log"))" 'check the network, or set ORV_DEBIAN_MIRROR'
for package in $packages; do
    unpacked=("$folder/$package"-*/)
    [ -d "${unpacked[0]}" ] || fail "the sources of $package did not unpack" "see $log"
    mv "${unpacked[0]}" "$folder/$package"
done
rm -f "$folder"/*.tar.* "$folder"/*.dsc
touch "$folder/complete"
printf '%s\n' "$folder"
