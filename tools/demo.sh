#!/usr/bin/env bash
# Shows the main use on a real NT interface: separate processes meet through named objects, and work on real files of this
# machine. Prints in plain words what happened, and ends with exit code 1 if anything was wrong.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
tool=build/release/bin/orvtool.exe
[ -e $tool ] || fail "$tool is missing" 'run: make demo'
work=$(mktemp -d)
tools/wine_session.sh start
trap 'tools/wine_session.sh stop; rm -rf "$work"' EXIT
differences=0

orvtool() { tools/run_wine.sh "$tool" "$@"; }

# start LOG ARGUMENT...: starts orvtool in the background. The shell's child is the Windows process itself.
start() {
    local log=$work/$1
    shift
    ORV_RUN_SECONDS=0 tools/run_wine.sh "$tool" "$@" >"$log" 2>&1 &
    started=$!
}

# until_said LOG TEXT: waits until a background process has printed the text
until_said() {
    local tries
    for tries in $(seq 200); do
        grep -q "$2" "$work/$1" && return
        sleep 0.1
    done
    differs "'$2' never appeared in the output of $1"
}

differs() {
    printf '  DIFFERS: %s\n' "$*"
    differences=$((differences + 1))
}

# said LOG "LINES" WORDS: checks that the output is exactly these lines, whatever the line ends; then prints the words.
said() {
    local actual
    actual=$(tr -d '\r' <"$work/$1" | grep -v '^orvtool ') || true # grep fails if there is no such line
    if [ "$actual" = "$2" ]; then
        printf '  %s\n' "$3"
    else
        differs "$3, but it said: $actual"
    fi
}

ended() { # ended PID EXIT-CODE: checks how a background process ended
    local code=0
    wait "$1" || code=$?
    [ "$code" -eq "$2" ] || differs "exit code $code, not $2"
}

runs() { # runs LOG EXIT-CODE ARGUMENT...: the same in the foreground
    local log=$work/$1 expected=$2 code=0
    shift 2
    orvtool "$@" >"$log" 2>&1 || code=$?
    [ "$code" -eq "$expected" ] || differs "exit code $code, not $expected: orvtool $*"
}

events_meet() { # events_meet NAMESPACE
    printf 'An event in the %s namespace:\n' "$1"
    runs lonely 3 event create OrvDemoEvent --namespace "$1" --wait --timeout 300
    said lonely $'create: 0x00000000 (ORV_S_OK)\nwait: 0xA0010004 (ORV_W_TIMEOUT)' \
        'nobody answers: the wait ends in 0xA0010004'
    start first event create OrvDemoEvent --namespace "$1" --wait --timeout 60000
    until_said first create:
    runs second 0 event create OrvDemoEvent --namespace "$1" --set
    ended "$started" 0
    said second $'create: 0x6001004F (ORV_S_ALREADY_EXISTS)\nset: 0x00000000 (ORV_S_OK)' \
        'a second process creates the same name, is told 0x6001004F, and sets it'
    said first $'create: 0x00000000 (ORV_S_OK)\nwait: 0x00000000 (ORV_S_OK)' \
        'the first process, which created it with 0, waits and returns with 0'
}

semaphore_counts() {
    printf 'A semaphore with count 2 and maximum 3:\n'
    start holder semaphore create OrvDemoSemaphore --count 2 --maximum 3 --hold 60000
    local holder=$started
    until_said holder create:
    runs one 0 semaphore wait OrvDemoSemaphore --timeout 300
    runs two 0 semaphore wait OrvDemoSemaphore --timeout 300
    runs three 3 semaphore wait OrvDemoSemaphore --timeout 300
    said two $'open: 0x00000000 (ORV_S_OK)\nwait: 0x00000000 (ORV_S_OK)' 'two waits pass'
    said three $'open: 0x00000000 (ORV_S_OK)\nwait: 0xA0010004 (ORV_W_TIMEOUT)' 'the third ends in 0xA0010004'
    runs release 0 semaphore release OrvDemoSemaphore --count 3
    runs beyond 1 semaphore release OrvDemoSemaphore
    runs four 0 semaphore wait OrvDemoSemaphore --timeout 300
    said four $'open: 0x00000000 (ORV_S_OK)\nwait: 0x00000000 (ORV_S_OK)' \
        'after a release of 3 a wait passes again; a release beyond the maximum failed'
    kill -9 "$holder"
    wait "$holder" 2>/dev/null || true
}

mutex_is_abandoned() {
    printf 'A mutex whose owner is killed:\n'
    start owner mutex acquire OrvDemoMutex --hold 60000
    local owner=$started
    until_said owner acquire:
    runs refused 3 mutex acquire OrvDemoMutex --timeout 300
    said refused $'create: 0x6001004F (ORV_S_ALREADY_EXISTS)\nacquire: 0xA0010004 (ORV_W_TIMEOUT)' \
        'while it is held, another process waits in vain'
    start heir mutex acquire OrvDemoMutex --timeout 60000
    local heir=$started
    until_said heir create:
    kill -9 "$owner"
    wait "$owner" 2>/dev/null || true
    ended "$heir" 0
    said heir $'create: 0x6001004F (ORV_S_ALREADY_EXISTS)\nacquire: 0x60010003 (ORV_S_ABANDONED)\nrelease: 0x00000000 (ORV_S_OK)' \
        'the owner is killed, and the next one gets it with 0x60010003'
}

memory_is_shared() {
    printf 'Shared memory of two processes that both add to one number, guarded by a named mutex:\n'
    start server shm serve 0xDE30 --size 4096 --hold 60000
    local server=$started
    until_said server create:
    start one shm count 0xDE30 --times 1000000 --mutex OrvDemoSum
    local one=$started
    start two shm count 0xDE30 --times 1000000 --mutex OrvDemoSum
    local two=$started
    ended "$one" 0
    ended "$two" 0
    runs sum 0 shm read 0xDE30 --size 8
    if [ "$(od -An -tu8 "$work/sum" | tr -d ' ')" = 2000000 ]; then
        printf '  each added a million, and the sum is 2000000\n'
    else
        differs "the sum is $(od -An -tu8 "$work/sum")"
    fi
    kill -9 "$server"
    wait "$server" 2>/dev/null || true
}

lock_file_excludes() { # lock_file_excludes WORDS OPTION...
    local words=$1 holder
    shift
    printf 'A file locked by its %s:\n' "$words"
    start holder lock "$@" "$work/demo.lock" -- "$tool" event create OrvDemoLocked --hold 60000
    holder=$started
    until_said holder create:
    runs refused 3 lock "$@" --timeout 300 "$work/demo.lock" -- "$tool" number 17
    grep -q 0x11 "$work/refused" && differs 'the command ran all the same'
    printf '  a second process is kept out and ends with exit code 3\n'
    start heir lock "$@" --timeout 60000 "$work/demo.lock" -- "$tool" number 17
    kill -9 "$holder"
    wait "$holder" 2>/dev/null || true
    ended "$started" 0
    said heir '17 0x11' 'the first one is killed, and the next one gets the lock'
}

# holds FILE FILE WORDS: checks that both have the same bytes; then prints the words.
holds() {
    if [ -s "$1" ] && cmp -s "$1" "$2"; then
        printf '  %s\n' "$3"
    else
        differs "$3, but the bytes differ"
    fi
}

# filters OUTPUT ARGUMENT...: runs orvtool as a filter, with its output in a file
filters() {
    local output=$work/$1
    shift
    orvtool "$@" >"$output" 2>"$work/error" || differs "orvtool $*: $(grep -a '^orvtool ' "$work/error")"
}

file_is_packed() {
    local file
    file=$(command -v cmake)
    printf 'A file of this machine, %s, %s bytes:\n' "$file" "$(wc -c <"$file")"
    sha512sum "$file" >"$work/theirs"
    filters ours hash -a sha512 "$file"
    holds "$work/ours" "$work/theirs" 'its SHA-512 is what sha512sum says'
    filters checked hash -c "$work/theirs"
    printf '%s: OK\n' "$file" >"$work/expected"
    holds "$work/checked" "$work/expected" 'the list that sha512sum wrote is checked: OK'
    filters deflated deflate "$file"
    filters inflated inflate "$work/deflated"
    holds "$work/inflated" "$file" "deflated to $(wc -c <"$work/deflated") bytes and inflated, it is the same"
    filters packed bzip2 "$file"
    filters unpacked bunzip2 "$work/packed"
    holds "$work/unpacked" "$file" "packed to $(wc -c <"$work/packed") bytes with bzip2 and unpacked, it is the same"
}

document_is_formatted() {
    local document
    for document in $(find /usr/share -name '*.xml' -size +4k 2>/dev/null | sort) none; do
        [ "$document" != none ] || fail 'there is no XML document under /usr/share' 'install any package with one'
        orvtool xml check "$document" >/dev/null 2>&1 && break
    done
    printf 'An XML document of this machine, %s, %s bytes:\n' "$document" "$(wc -c <"$document")"
    filters formatted.xml xml format "$document"
    filters checked xml check "$work/formatted.xml"
    printf '  formatted to %s lines, it is well-formed\n' "$(wc -l <"$work/formatted.xml")"
    filters again.xml xml format "$work/formatted.xml"
    holds "$work/again.xml" "$work/formatted.xml" 'formatted once more, it stays as it is'
    (cat "$work/formatted.xml" && printf '<more>') >"$work/broken.xml"
    runs complaint 1 xml check "$work/broken.xml"
    grep -q 'not well-formed' "$work/complaint" || differs 'a document with a tag too many was taken'
    printf '  with a tag too many it is refused at byte %s\n' "$(sed -n 's/.*: byte \([0-9]*\),.*/\1/p' "$work/complaint")"
}

orvtool info
file_is_packed
document_is_formatted
events_meet session
events_meet global
semaphore_counts
mutex_is_abandoned
memory_is_shared
lock_file_excludes mutex
lock_file_excludes 'reader/writer lock' --exclusive

if [ "$differences" -gt 0 ]; then
    printf '%s differences\n' "$differences"
    exit 1
fi
printf 'Everything happened as it must.\n'
