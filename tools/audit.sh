#!/usr/bin/env bash
# Prints for each library that orvsys.dll contains one line: whether the distribution has a newer version with a security
# fix. A fix is a CVE number that the changelog of the newer package names and that of ours does not. Fails if a mirror
# serves a version with a fix. Needs the network; the answer can differ from day to day.
set -euo pipefail
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/source_packages.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# cves FILE...: the CVE numbers in them, sorted.
cves() { cat -- "$@" | grep -oE 'CVE-[0-9]{4}-[0-9]+' | sort -u || true; }

# changelog_of LIBRARY VERSION: the package's changelog, fetched without the rest; 1 if it is not served.
changelog_of() {
    rm -rf "$work/changelog"
    mkdir "$work/changelog"
    archives_of "$1" "$2" | grep -F .debian.tar. | download "$1" "$work/changelog" &&
        tar -xOf "$work"/changelog/*.debian.tar.* debian/changelog
}

# judge LIBRARY: prints its line. 1 if there is a fix to take.
judge() {
    local library=$1 ours version newest='' unserved='' fixed
    ours=$(fact "$library" version)
    read_lists "$library"
    for version in $(versions_named "$library"); do
        dpkg --compare-versions "$version" gt "$ours" || break
        if changelog_of "$library" "$version" >"$work/theirs"; then
            newest=$version
            break
        fi
        unserved="$unserved${unserved:+, }$version"
    done
    printf '%s %s: ' "$library" "$ours"
    [ -z "$unserved" ] || printf '%s named, but not served, so what it fixes cannot be read; ' "$unserved"
    if [ -z "$newest" ]; then
        printf 'nothing newer to be had in %s\n' "$(fact "$library" suites | sed 's/ /, /g')"
        return
    fi
    find "$sources/$library" -maxdepth 2 -type f -iname 'change*' -exec cat {} + >"$work/ours"
    fixed=$(comm -23 <(cves "$work/theirs") <(cves "$work/ours") | tr '\n' ' ')
    if [ -z "$fixed" ]; then
        printf '%s is newer, without a security fix\n' "$newest"
        return
    fi
    printf '%s fixes %s- take it into cmake/dependencies.txt\n' "$newest" "$fixed"
    return 1
}

find_mirrors
sources=$("$root/tools/get_sources.sh")
status=0
for library in $(libraries); do
    judge "$library" || status=1
done
exit $status
