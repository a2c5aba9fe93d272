#!/usr/bin/env bash
# Puts the sources of the libraries that orvsys.dll contains into the cache folder, as the distribution's own source
# packages with its patches, and prints the folder. Needs no root. All checkouts whose cmake/dependencies.txt is the same
# share it.
#
# It takes the version that the file names. Mirrors remove a version soon after there is a newer one; then it takes the
# newest that they serve, unless that is below the lowest that may be built, and says so.
#
# The folder has a subfolder for each library, and a file `versions` with a line "LIBRARY VERSION" of what it holds.
set -euo pipefail
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/source_packages.sh"

# Ends the script if the folder is complete.
finish_if_complete() {
    local library version
    [ -e "$folder/complete" ] || return 0
    while read -r library version; do
        [ "$version" = "$(fact "$library" version)" ] ||
            say "$library is $version here: the mirrors do not serve $(fact "$library" version), see: make audit"
    done <"$folder/versions"
    printf '%s\n' "$folder"
    exit 0
}

# unpack LIBRARY VERSION: the downloaded files become its subfolder.
unpack() {
    (cd "$downloads" && dpkg-source --no-copy --extract *.dsc "../$1") >"$downloads/log" 2>&1 ||
        fail "cannot unpack the sources of $1 ($(tail -n 1 "$downloads/log"))" "remove $folder and try again"
    printf '%s %s\n' "$1" "$2" >>"$folder/versions"
}

empty_downloads() {
    rm -rf "$downloads"
    mkdir -p "$downloads"
}

# take_newest LIBRARY: the newest version that is served and high enough.
take_newest() {
    local library=$1 lowest version
    lowest=$(fact "$library" lowest)
    read_lists "$library"
    for version in $(versions_named "$library"); do
        dpkg --compare-versions "$version" ge "$lowest" || break
        empty_downloads
        if archives_of "$library" "$version" | download "$library" "$downloads"; then
            unpack "$library" "$version"
            return
        fi
    done
    fail "$mirror serves no $library from $lowest on" \
        "set ORV_DEBIAN_MIRROR to a mirror that does, or update $dependencies"
}

folder=$cache/sources-$(sha256sum <"$dependencies" | cut -c -16)
downloads=$folder/downloads
finish_if_complete

command -v dpkg-source >/dev/null || fail 'dpkg-source is missing' 'run: apt-get install dpkg-dev'
make_cache
exec 9>"$cache/sources.lock"
flock 9 # two checkouts may do this at once on a fresh machine
finish_if_complete

# shellcheck disable=SC2046  # each library is one word
say "fetching the sources of" $(libraries) "(11 MB, once)"
find_mirrors
rm -rf "$folder"
for library in $(libraries); do
    version=$(fact "$library" version)
    empty_downloads
    if fact "$library" archive | download "$library" "$downloads"; then
        unpack "$library" "$version"
    else
        reason=$(grep -m 1 '^E: ' "$downloads/log") || reason=$(tail -n 1 "$downloads/log")
        say "$library $version cannot be fetched ($reason), looking for the newest that can"
        take_newest "$library"
    fi
done
rm -rf "$downloads"
touch "$folder/complete"
finish_if_complete
