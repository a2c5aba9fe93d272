#!/usr/bin/env bash
# Puts a 32-bit Wine into the cache folder, without root and without touching the system, and prints the path
# of its `wine`. A multi-arch installation would pull in over a hundred packages, and fails if the versions of the two
# architectures differ; a console program needs only the few below. All checkouts share it.
#
# ORV_PLATFORM chooses: wine10 (the default) or wine8, which reports Windows 7. ORV_WINE names another Wine to use
# instead. ORV_CACHE moves the cache.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

if [ -n "${ORV_WINE:-}" ]; then
    [ -x "$ORV_WINE" ] || fail "ORV_WINE=$ORV_WINE is not a program" 'name the wine executable, or unset ORV_WINE'
    printf '%s\n' "$ORV_WINE"
    exit 0
fi

case ${ORV_PLATFORM:-wine10} in
wine10) suite=trixie ;;
wine8) suite=bookworm ;;
*) fail "there is no platform '$ORV_PLATFORM'" 'say wine10 or wine8' ;;
esac
packages='wine32 wine libwine libc6 libgcc-s1 libunwind8 liblzma5 libz-mingw-w64'
folder=$cache/wine-$suite-2
wine=$folder/usr/lib/wine/wine

if [ -e "$folder/complete" ]; then
    printf '%s\n' "$wine"
    exit 0
fi

command -v patchelf >/dev/null || fail 'patchelf is missing' 'run: apt-get install patchelf'
make_cache
exec 9>"$cache/wine.lock"
flock 9 # two checkouts may do this at once on a fresh machine
if [ -e "$folder/complete" ]; then
    printf '%s\n' "$wine"
    exit 0
fi

say "fetching a 32-bit Wine (${ORV_PLATFORM:-wine10}, 110 MB, once)"
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
[ -e $keyring ] || fail "$keyring is missing" 'run: apt-get install debian-archive-keyring'
mirror=$(debian_mirror)
private_apt "wine-$suite" i386 "deb [signed-by=$keyring] $mirror $suite main"

downloads=$cache/apt/wine-$suite/download
rm -rf "$downloads" "$folder"
mkdir -p "$downloads" "$folder"
# shellcheck disable=SC2086  # the list is split on purpose
(cd "$downloads" && APT_CONFIG=$apt_conf apt-get -qq download $packages) >&2 ||
    fail 'cannot download Wine' 'check the network, or set ORV_WINE to an installed 32-bit Wine'
for package in "$downloads"/*.deb; do
    dpkg-deb -x "$package" "$folder" || fail "cannot unpack $(basename "$package")" "remove $cache and try again"
done
rm -rf "$downloads"

# Four changes make the tree relocatable: its own dynamic loader and libraries, a wineserver under the name that Wine looks
# for, its data files where Wine looks for them, and a zlib1.dll that Wine accepts as one of its own. The path of the
# libraries also applies to what they load themselves (--force-rpath): the system may have no 32-bit ones.
libraries=$folder/usr/lib/i386-linux-gnu
loader=$(find "$folder" -name 'ld-linux.so.2' | head -n 1)
[ -n "$loader" ] || fail 'the downloaded C library has no loader' "remove $cache and try again"
for program in wine wineserver32; do
    patchelf --set-interpreter "$loader" --force-rpath --set-rpath "$libraries:$folder/lib/i386-linux-gnu" \
        "$folder/usr/lib/wine/$program"
done
ln -sf wineserver32 "$folder/usr/lib/wine/wineserver"
ln -sfn . "$folder/usr/share/wine/wine"
zlib=$libraries/wine/i386-windows/zlib1.dll
cp "$folder/usr/i686-w64-mingw32/lib/zlib1.dll" "$zlib"
{ printf 'Wine builtin DLL' && head -c 16 /dev/zero; } | dd of="$zlib" bs=1 seek=64 conv=notrunc status=none

touch "$folder/complete"
say 'Wine is ready'
printf '%s\n' "$wine"
