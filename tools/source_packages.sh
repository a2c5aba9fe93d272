# The libraries that cmake/dependencies.txt names, as source packages of the distribution: what that file says of them,
# what the suites name now, and their files by digest. Sourced, with tools/lib.sh before it; never run.
#
# A file is taken by its SHA-256 and nothing else: from dependencies.txt, or from a suite's index, whose signature apt
# has verified. So it does not matter which pool it comes from.

dependencies=$root/cmake/dependencies.txt

# fact LIBRARY NAME: the values of that fact, one a line.
fact() { sed -n "s/^$1 $2 //p" "$dependencies"; }

libraries() { sed -n 's/^\([a-z0-9]*\) version .*/\1/p' "$dependencies"; }

# The mirror of the security suites. Their path is another one, and not every mirror has them.
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

# find_mirrors: both mirrors, in $mirror and $security.
find_mirrors() {
    mirror=$(debian_mirror)
    mirror=${mirror%/}
    security=$(security_mirror)
    security=${security%/}
}

# read_lists LIBRARY: has apt read and verify the indexes of the library's suites, and leaves in $apt_conf what
# versions_named and archives_of ask then. Without a security archive it says so and goes on.
read_lists() {
    local library=$1 keyring=/usr/share/keyrings/debian-archive-keyring.gpg suite complaint lines=() pockets=()
    [ -e "$keyring" ] || fail "$keyring is missing" 'run: apt-get install debian-archive-keyring'
    for suite in $(fact "$library" suites); do
        lines+=("deb-src [signed-by=$keyring] $mirror $suite main")
        lines+=("deb-src [signed-by=$keyring] $mirror $suite-updates main")
        pockets+=("deb-src [signed-by=$keyring] $security $suite-security main")
    done
    # The message of the last failure is the one that counts.
    complaint=$(private_apt "sources-$library" "$(dpkg --print-architecture)" "${lines[@]}" "${pockets[@]}" 2>&1) || {
        private_apt "sources-$library" "$(dpkg --print-architecture)" "${lines[@]}"
        say "the security archive is left out, set ORV_DEBIAN_SECURITY_MIRROR ($complaint)"
    }
    apt_conf=$cache/apt/sources-$library/etc/apt.conf
}

# source_index LIBRARY: what the lists say of it, as stanzas.
source_index() { APT_CONFIG=$apt_conf apt-cache showsrc --only-source "$1" 2>/dev/null; }

# versions_named LIBRARY: every version in the lists, the newest first.
versions_named() { source_index "$1" | sed -n 's/^Version: //p' | sort -ruV; }

# archives_of LIBRARY VERSION: digest and name of each of its files, from the lists. Two suites may have it.
archives_of() {
    source_index "$1" | awk -v wanted="$2" '
        /^Version: / { found = $2 == wanted }
        /^[^ ]/ { digests = $1 == "Checksums-Sha256:" }
        /^ / && found && digests && !seen[$1, $3]++ { print $1, $3 }'
}

# download LIBRARY FOLDER: takes lines of digest and name, and puts these files into the folder. 1 when one of them is
# not served with that digest; what apt said is in FOLDER/log then.
download() {
    local library=$1 digest name pool got
    : >"$2/log"
    while read -r digest name; do
        got=''
        for pool in "$mirror/pool/main" "$security/pool/updates/main"; do
            # Its own folder is the current one, so that no path has to pass through apt's line protocol.
            (cd "$2" && /usr/lib/apt/apt-helper -o APT::Sandbox::User=root -o Acquire::Retries=2 download-file \
                "$pool/${library:0:1}/$library/$name" "$name" "SHA256:$digest") >>"$2/log" 2>&1 && got=yes && break
        done
        [ -n "$got" ] || return 1
    done
}
