# The libraries that cmake/dependencies.txt names, as source packages of the distribution: what that file says about them,
# what the suites name now, and their files by digest. Sourced after tools/lib.sh, never run.
#
# Only its SHA-256 decides whether a file is accepted. The digest comes from dependencies.txt, or from a suite's index, whose
# signature apt has verified. So it does not matter from which pool the file comes.

dependencies=$root/cmake/dependencies.txt

# fact LIBRARY NAME: prints the values of that fact, one in each line.
fact() { sed -n "s/^$1 $2 //p" "$dependencies"; }

libraries() { sed -n 's/^\([a-z0-9]*\) version .*/\1/p' "$dependencies"; }

# The mirror of the security suites, which have another path and are not on every mirror.
security_mirror() {
    local uri=''
    if [ -n "${ORV_DEBIAN_SECURITY_MIRROR:-}" ]; then
        printf '%s\n' "$ORV_DEBIAN_SECURITY_MIRROR"
        return
    fi
    if [ -z "${ORV_DEBIAN_MIRROR:-}" ]; then
        uri=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Component: main' 2>/dev/null |
            grep -E '/debian-security/?$|//security\.debian\.org/?$' | head -n 1) || true
    fi
    [ -n "$uri" ] || uri=${mirror%/}-security
    printf '%s\n' "$uri"
}

# find_mirrors: sets $mirror and $security to the two mirrors.
find_mirrors() {
    mirror=$(debian_mirror)
    mirror=${mirror%/}
    security=$(security_mirror)
    security=${security%/}
}

# read_lists LIBRARY: lets apt read and verify the indexes of the library's suites, and sets $apt_conf, which versions_named
# and archives_of use. If there is no security archive, it says so and continues.
read_lists() {
    local library=$1 keyring=/usr/share/keyrings/debian-archive-keyring.gpg suite complaint lines=() pockets=()
    [ -e "$keyring" ] || fail "$keyring is missing" 'run: apt-get install debian-archive-keyring'
    for suite in $(fact "$library" suites); do
        lines+=("deb-src [signed-by=$keyring] $mirror $suite main")
        lines+=("deb-src [signed-by=$keyring] $mirror $suite-updates main")
        pockets+=("deb-src [signed-by=$keyring] $security $suite-security main")
    done
    # Only the message of the last failure matters.
    complaint=$(private_apt "sources-$library" "$(dpkg --print-architecture)" "${lines[@]}" "${pockets[@]}" 2>&1) || {
        private_apt "sources-$library" "$(dpkg --print-architecture)" "${lines[@]}"
        say "the security archive is left out, set ORV_DEBIAN_SECURITY_MIRROR ($complaint)"
    }
    apt_conf=$cache/apt/sources-$library/etc/apt.conf
}

# source_index LIBRARY: prints what the lists say about it, as stanzas.
source_index() { APT_CONFIG=$apt_conf apt-cache showsrc --only-source "$1" 2>/dev/null; }

# versions_named LIBRARY: prints every version in the lists, the newest first.
versions_named() { source_index "$1" | sed -n 's/^Version: //p' | sort -ruV; }

# archives_of LIBRARY VERSION: prints digest and name of each of its files, from the lists. Two suites may have it.
archives_of() {
    source_index "$1" | awk -v wanted="$2" '
        /^Version: / { found = $2 == wanted }
        /^[^ ]/ { digests = $1 == "Checksums-Sha256:" }
        /^ / && found && digests && !seen[$1, $3]++ { print $1, $3 }'
}

# download LIBRARY FOLDER: reads lines of digest and name, and puts these files into the folder. 1 if one of them is not
# served with that digest; FOLDER/log then contains the output of apt.
download() {
    local library=$1 digest name pool got
    : >"$2/log"
    while read -r digest name; do
        got=''
        for pool in "$mirror/pool/main" "$security/pool/updates/main"; do
            # apt runs in the target folder, so that no path has to pass through its line protocol.
            (cd "$2" && /usr/lib/apt/apt-helper -o APT::Sandbox::User=root -o Acquire::Retries=2 download-file \
                "$pool/${library:0:1}/$library/$name" "$name" "SHA256:$digest") >>"$2/log" 2>&1 && got=yes && break
        done
        [ -n "$got" ] || return 1
    done
}
