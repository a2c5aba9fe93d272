#!/usr/bin/env bash
# Tests the commands of orvtool that need nothing but arguments and input, case by case: test_orvtool.sh ORVTOOL
# Prints what differs, and a last line "N passed, N failed".
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

tool=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

# What orvtool wrote to standard error, without the messages of Wine.
said() { grep -aE '^(orvtool|[^ ]*: byte )' "$work/error" | tr -d '\r' || true; }

# judge WORDS COMMAND...: the case with that description passes if the command succeeds.
judge() {
    if "${@:2}"; then
        passed=$((passed + 1))
        return
    fi
    failed=$((failed + 1))
    printf '%s: it is not so\n' "$1"
}

# call ARGUMENT...: runs orvtool with the caller's streams, and sets $code to its exit code.
call() {
    code=0
    "$root/tools/run_wine.sh" "$tool" "$@" 2>"$work/error" || code=$?
}

# run ARGUMENT...: the same for a command that has to succeed.
run() {
    call "$@"
    [ "$code" -eq 0 ] || printf 'orvtool %s failed: %s\n' "$*" "$(said)" >&2
    return "$code"
}

# is CODE INPUT OUTPUT ARGUMENT...: orvtool, given INPUT, prints OUTPUT and ends with CODE. INPUT and OUTPUT may have
# escapes of printf; OUTPUT is the standard output, followed by the messages on standard error.
is() {
    local expected=$1
    printf '%b' "$2" >"$work/in"
    printf '%b' "$3exit code $expected\n" >"$work/expected"
    shift 3
    call "$@" <"$work/in" >"$work/out"
    (said && printf 'exit code %s\n' "$code") >>"$work/out"
    judge "orvtool $*" diff -a "$work/expected" "$work/out"
}

# like CODE PATTERN ARGUMENT...: the same with a pattern for the whole standard output: an extended regular expression, with
# blanks for line ends.
like() {
    local expected=$1 pattern=$2
    shift 2
    call "$@" </dev/null >"$work/out"
    judge "orvtool $*: exit code $code, not $expected, or no match: $(cat "$work/out")" \
        matches "$expected" "$(tr '\n' ' ' <"$work/out")" "$pattern"
}
matches() { [ "$code" -eq "$1" ] && [[ $2 =~ ^($3)$ ]]; }

# says TEXT ARGUMENT...: orvtool ends with exit code 1 and exactly this message; its output is not compared.
says() {
    local expected=$1
    shift
    call "$@" >/dev/null
    judge "orvtool $*: exit code $code, or it said: $(said)" [ "$code $(said)" = "1 $expected" ]
}

# same WORDS FILE FILE: both files have the same bytes.
same() { judge "$1" cmp "$2" "$3"; }

have() { command -v "$1" >/dev/null; }

repeat() { # repeat TEXT TIMES
    local i
    for ((i = 0; i < $2; i++)); do printf '%s' "$1"; done
}

see() { printf "See 'orvtool %s --help'.\\\\n" "$1"; }

printf 'foo' >"$work/file"
declaration='<?xml version="1.0" encoding="utf-8"?>\n'

is 0 '\x00\xff\x10' 'AP8Q\n' base64 -
is 0 '' 'Zm9v\n' base64 "$work/file"
is 0 "$(repeat foo 3000)" "$(repeat Zm9v 3000)\n" base64
is 1 '' "orvtool base64: opening '$work/none' failed: 0xE001003D (ORV_E_FILE_NOT_FOUND)\n" base64 "$work/none"
is 0 'AP8Q' '\x00\xff\x10' base64 -d
is 1 'Zm9v\n' 'fooorvtool base64: this is no Base64 at offset 4\n' base64 -d --strict
is 1 'Zm9vZg' 'fooorvtool base64: the text ends inside a group at offset 6\n' base64 -d

guid='[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12} '
like 0 "($guid){3}" guid -n 3
like 0 '([0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12} ){2}' guid --random -n 2

is 0 '' 'abc\nabbc\n' match 'a*c' abc ac.d abbc
is 1 '' '' match '*.txt' A.TXT
is 0 'a.txt\r\nb.c\n\nd.txt' 'a.txt\nd.txt\n' match '*.txt'
is 0 '' '-i\n' match -- -i -i
is 2 '' "orvtool match: a pattern is missing. $(see match)" match -i

is 0 '' '31 0x1F\n-5 0xFFFFFFFFFFFFFFFB\n' number 0x1f -5
is 0 '12\n9223372036854775807\n' '12 0xC\n9223372036854775807 0x7FFFFFFFFFFFFFFF\n' number
is 1 '' "12 0xC\norvtool number: this is no number at offset 2: '12x'\n" number 12 12x 13
is 1 '1\n1 2\n3\n' "1 0x1\norvtool number: line 2 is no number at offset 1: '1 2'\n" number
is 2 '' "orvtool number: the radix is 2 to 36, or 0, not '37'. $(see number)" number --radix 37 1

is 0 '' '89400484\n976015093\n' random -n 2
like 2 '' random x

is 0 'a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80' 'a\x00\xe9\x00\xac\x20\x3d\xd8\x00\xde' convert --from utf-8 --to utf-16
is 0 '' 'foo' convert --from utf-8 --to utf-7 "$work/file"
fault() { printf 'orvtool convert: the input is malformed at offset %s\\n' "$1"; }
is 1 'ab\xc3\xa9\xed\xa0\x80x' "ab\xc3\xa9$(fault 4)" convert --from utf-8 --to utf-8
is 1 'a\n+AOk-+2D0-x' "a\n\xc3\xa9$(fault 7)" convert --from utf-7 --to utf-8
is 2 '' "orvtool convert: there is no page 'utf-9'. $(see convert)" convert --from utf-9 --to utf-8
# One long line, in which a piece of the input would end inside a character; then the same followed by a fault.
printf 'é€😀x%.0s' $(seq 20000) >"$work/line"
run convert --from utf-8 --to utf-16 "$work/line" >"$work/line16"
if have iconv; then
    iconv -f utf-8 -t utf-16le "$work/line" >"$work/expected"
    same 'convert to UTF-16, beside iconv' "$work/line16" "$work/expected"
    run convert --from utf-8 --to utf-7 "$work/line" | iconv -f utf-7 -t utf-8 >"$work/out" || true
    same 'convert to UTF-7, read by iconv' "$work/out" "$work/line"
fi
run convert --from utf-16 --to utf-8 "$work/line16" >"$work/out"
same 'convert from UTF-16' "$work/out" "$work/line"
printf '\x00\xdc' >>"$work/line16"
printf '\xc3' >>"$work/line"
says 'orvtool convert: the input is malformed at offset 200000' convert --from utf-8 --to utf-16 "$work/line"
says 'orvtool convert: the input is malformed at offset 200000' convert --from utf-16 --to utf-8 "$work/line16"

is 0 '123456789' 'e3069283  -\n' hash -a crc32c -
foo=2c26b46b68ffc68ff99b453c1d30413413422d706483bfa0f98a5e886266e7ae
none="orvtool hash: reading '$work/none' failed: 0xE001003D (ORV_E_FILE_NOT_FOUND)\n"
is 1 'foo' "$foo  -\n$foo  $work/file\n$none" hash - "$work/none" "$work/file"
is 0 "$foo  $work/file\r\n$foo *$work/file\n" "$work/file: OK\n$work/file: OK\n" hash -c -
windows=$(printf '%s' "$work/file" | sed 's#/#\\\\\\\\#g') # each backslash as a sum tool writes it, for printf
is 0 "\\\\$foo  $windows\n" "${windows//\\\\\\\\/\\\\}: OK\n" hash -c -
is 1 "ab  x\n${foo/2/3}  $work/file\n$foo  $work/none\n${foo/2/4}  $work/file" \
    "$work/file: FAILED\n$work/none: FAILED open or read\n$work/file: FAILED
${none}orvtool hash: 1 line lists no digest
orvtool hash: 1 listed file cannot be read
orvtool hash: 2 digests do not match\n" hash -c -
# A list as UTF-8 and as UTF-16 of both byte orders, after their marks; also cut inside a mark and inside a character.
printf '%s  %s\n' "$foo" "$work/file" "$foo" "$work/file" >"$work/list"
(printf '\xef\xbb\xbf' && cat "$work/list") >"$work/utf8"
(printf '\xff\xfe' && run convert --from utf-8 --to utf-16 "$work/list") >"$work/utf16le"
dd conv=swab if="$work/utf16le" of="$work/utf16be" status=none
printf '%s: OK\n' "$work/file" "$work/file" >"$work/expected"
for list in utf8 utf16le utf16be; do
    run hash -c "$work/$list" >"$work/out"
    same "hash -c of a list in $list" "$work/out" "$work/expected"
    (head -c 1 "$work/$list" && sleep 0.2 && tail -c +2 "$work/$list" | head -c 10 && sleep 0.2 &&
        tail -c +12 "$work/$list") | run hash -c - >"$work/out"
    same "hash -c of a list in $list that comes in parts" "$work/out" "$work/expected"
done
instead='for less than 512 MiB: take sha512 for less than 4 GiB, or md5 for any length'
truncate -s 512M "$work/sparse"
is 1 '' "orvtool hash: '$work/sparse' is too long for sha256, which is $instead\n" hash -a sha256 "$work/sparse"
says "orvtool hash: '-' is too long for sha1, which is $instead" hash -a sha1 - < <(cat "$work/sparse")
rm "$work/sparse"
is 1 'abc' "orvtool hash: '-' lists no file with a digest that can be checked\n" hash -c -
is 2 '' "orvtool hash: there is no algorithm 'sha3'. $(see hash)" hash -a sha3 -
is 2 '' "orvtool hash: a file is missing, or '-' for standard input. $(see hash)" hash -c

z='\x78\x9c\x4b\xcb\xcf\x07\x00\x02\x82\x01\x45' # "foo" as zlib's default level writes it
is 0 'foo' "$z" deflate
is 0 'foo' '\x4b\xcb\xcf\x07\x00' deflate --raw -6
is 0 "$z" 'foo' inflate
is 1 "${z}x" 'fooorvtool inflate: other data follows the stream, at offset 11\n' inflate
is 1 "${z%\\x45}\x46" 'fooorvtool inflate: the data is corrupt at offset 11\n' inflate
is 1 'foo' 'orvtool bunzip2: the data is corrupt at offset 1\n' bunzip2
is 2 '' "orvtool deflate: a level is 0 to 9, not '10'. $(see deflate)" deflate --level 10
run bzip2 "$work/file" >"$work/foo.bz2"
size=$(wc -c <"$work/foo.bz2")
cat "$work/foo.bz2" "$work/foo.bz2" >"$work/twice.bz2"
(cat "$work/twice.bz2" && printf 'x') >"$work/tail.bz2"
is 0 '' 'foofoo' bunzip2 "$work/twice.bz2"
is 1 '' "foofooorvtool bunzip2: other data follows the stream, at offset $((2 * size))\n" bunzip2 "$work/tail.bz2"
head -c $((size + 20)) "$work/twice.bz2" >"$work/cut.bz2"
is 1 '' "fooorvtool bunzip2: the data ends at offset $((size + 20)), before its stream does\n" bunzip2 "$work/cut.bz2"

# Real files, exchanged with the machine's own tools in both directions.
big=$(command -v cmake)
small=$(find /usr/share -path '*/cmake*/Modules/FindPkgConfig.cmake' 2>/dev/null | head -n 1) || true
[ -e "$small" ] || small=$root/README.md
for file in "$small" "$big"; do
    for algorithm in md5 sha1 sha256 sha512; do
        have ${algorithm}sum || continue
        ${algorithm}sum "$file" >"$work/sums"
        run hash -a $algorithm "$file" >"$work/out"
        same "hash -a $algorithm" "$work/out" "$work/sums"
        is 0 '' "$file: OK\n" hash -c "$work/sums"
    done
    base64 "$file" >"$work/text"
    run base64 -d "$work/text" >"$work/out"
    same 'base64 -d' "$work/out" "$file"
    run base64 "$file" | fold -w 76 >"$work/out"
    same 'base64' "$work/out" "$work/text"
    printf '!' >>"$work/text"
    says "orvtool base64: this is no Base64 at offset $(($(wc -c <"$work/text") - 1))" base64 -d "$work/text"
    for level in -1 -9; do
        run deflate $level "$file" >"$work/packed"
        run inflate "$work/packed" >"$work/out"
        same "deflate $level and inflate" "$work/out" "$file"
        run bzip2 $level "$file" >"$work/packed.bz2"
        run bunzip2 "$work/packed.bz2" >"$work/out"
        same "bzip2 $level and bunzip2" "$work/out" "$file"
    done
    if have python3; then
        crc=$(python3 -c 'import binascii, sys; print("%08x" % binascii.crc32(open(sys.argv[1], "rb").read()))' "$file")
        is 0 '' "$crc  $file\n" hash -a crc32 "$file"
        python3 -c 'import sys, zlib; sys.stdout.buffer.write(zlib.decompress(sys.stdin.buffer.read()))' \
            <"$work/packed" >"$work/out"
        same 'deflate, read by zlib' "$work/out" "$file"
        python3 -c 'import sys, zlib; sys.stdout.buffer.write(zlib.compress(sys.stdin.buffer.read()))' \
            <"$file" >"$work/packed"
        run inflate - <"$work/packed" >"$work/out"
        same 'inflate of what zlib wrote' "$work/out" "$file"
    fi
    if have bzip2; then
        bzip2 -dc "$work/packed.bz2" >"$work/out"
        same 'bzip2, read by bzip2' "$work/out" "$file"
        bzip2 -c "$file" | run bunzip2 >"$work/out"
        same 'bunzip2 of what bzip2 wrote' "$work/out" "$file"
    fi
done
# A command that takes more than a second shows no progress on a pipe.
for ((i = 0; i < 3; i++)); do cat "$big"; done >"$work/long"
run bzip2 "$work/long" >/dev/null
grep -aE '%|MB' "$work/error" >"$work/out" || true
same 'progress that nobody sees' "$work/out" /dev/null

is 0 '<a>\r\n<b x="1"/> <c>t</c>\n\n</a>' "$declaration<a>\n  <b x=\"1\"/>\n  <c>t</c>\n</a>\n" xml format -
is 1 '<a>\n <b></a>' '-: byte 10, line 2, column 7: not well-formed\n' xml check -
is 2 '' "orvtool xml: there is no action 'x'. $(see xml)" xml x
# Time grows with the size of an attribute list: if it grew with its square, this one would take minutes.
{ printf '<!DOCTYPE a [<!ATTLIST a '; seq -f 'b%07.0f CDATA "value"' 1100000; printf '>]><a/>'; } >"$work/attributes"
ORV_RUN_SECONDS=60 is 0 '' '' xml check "$work/attributes"
document=$(find /usr/share/xml /usr/share/cmake* /usr/share -name '*.xml' -size +8k 2>/dev/null | head -n 1) || true
if [ -e "$document" ] && have xmllint && have python3; then
    run xml format "$document" >"$work/once"
    run xml format "$work/once" >"$work/out"
    same 'xml format of what it wrote' "$work/out" "$work/once"
    # What another parser reads from both documents, without the white space between elements.
    canonical='import sys, xml.etree.ElementTree as tree; print(tree.canonicalize(from_file=sys.argv[1], strip_text=True))'
    python3 -c "$canonical" "$document" >"$work/expected"
    python3 -c "$canonical" "$work/once" >"$work/out"
    same 'xml format, read by another parser' "$work/out" "$work/expected"
    xmllint --format "$work/once" >"$work/expected"
    run xml format "$work/expected" >"$work/out"
    same 'xml format of what xmllint wrote' "$work/out" "$work/once"
fi

like 0 'system +Windows [0-9]+\.[0-9]+\.[0-9]+.*, (x86|x64) suites .* processors +[1-9][0-9]* memory +pages of 4096 bytes, reserved in steps of 65536 .*' info
like 0 '[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\.[0-9]{9}Z ' time
like 0 '[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\.[0-9]{9} ' time --local
instant=2026-11-21T09:10:11.123456700Z
while read -r form value back; do
    is 0 '' "$value\n" time convert $instant --to "$form"
    is 0 '' "$back\n" time convert "$value" --from "$form"
done <<FORMS
iso $instant $instant
orvtime 134397258111234567 $instant
filetime 01DD7998:1C81B207 $instant
unix 1795252211 2026-11-21T09:10:11.000000000Z
variant 4.6347382073188157e+04 2026-11-21T09:10:11.123456000Z
dos 5D75:4945 2026-11-21T09:10:10.000000000Z
FORMS
is 0 '' "$instant\n" time convert 0x01DD79981C81B207 --from filetime
is 0 '' '116444735950000000\n' time convert -5 --from unix --to orvtime
range='failed: 0xE0010064 (ORV_E_TIME_OUT_OF_RANGE)'
is 1 '' "orvtool time: converting to 'iso' $range\n" time convert -5 --from unix
is 1 '' "orvtool time: converting '1600-12-31T00:00:00Z' $range\n" time convert 1600-12-31T00:00:00Z --to orvtime
is 1 '' "orvtool time: 'FFFFFFFF:FFFFFFFF' is the end marker: it stands for no time, and has no other form\n" \
    time convert FFFFFFFF:FFFFFFFF --from filetime
is 1 '' "orvtool time: converting '2026-02-30T00:00:00Z' failed: 0xE0010002 (ORV_E_INVALID_ARGUMENT)\n" \
    time convert 2026-02-30T00:00:00Z
is 2 '' "orvtool time: the value is not of the form that --from says: '2026-11-21'. $(see time)" time convert 2026-11-21
is 2 '' "orvtool time: there is no form 'x'. $(see time)" time convert 1 --to x

is 0 '' '17 0x11\n' lock "$work/lock" -- "$tool" number 17
is 1 '' 'orvtool number: this is no number at offset 0: '"'"'a b"c\\\\'"'"'\n' \
    lock -x "$work/lock" -- "$tool" number 'a b"c\\' # the command line has to be quoted
is 3 '' "orvtool lock: locking '$work/lock' failed: 0xA0010004 (ORV_W_TIMEOUT)\n" \
    lock -x "$work/lock" -- "$tool" lock -s --timeout 50 "$work/lock" -- "$tool" number 17
is 0 '' '17 0x11\n' lock -s "$work/lock" "$tool" lock --timeout=50 -s "$work/lock" -- "$tool" number 17
is 3 '' "orvtool lock: locking '$work/lock' failed: 0xA0010004 (ORV_W_TIMEOUT)\n" \
    lock "$work/lock" -- "$tool" lock --timeout 50 "$work/lock" -- "$tool" number 17
is 1 '' "orvtool lock: starting the command failed: 0xE001003D (ORV_E_FILE_NOT_FOUND)\n" lock "$work/lock" none
is 2 '' "orvtool lock: 'x' is no value for '--timeout'. $(see lock)" lock --timeout x "$work/lock"

is 1 '' 'orvtool shm: opening the memory failed: 0xE001003D (ORV_E_FILE_NOT_FOUND)\n' shm read 0x7E57
ORV_RUN_SECONDS=60 "$root/tools/run_wine.sh" "$tool" shm serve 0x7E57 --size 5000 --hold 60000 >"$work/server" 2>/dev/null &
for _ in $(seq 100); do grep -q create "$work/server" && break || sleep 0.1; done
is 0 abc '3\n' shm write 0x7E57 --offset 4000
is 0 '' 'abc' shm read 0x7E57 --offset 4000 --size 3
is 1 abc 'orvtool shm: the input goes on behind the 2 bytes that were written\n' shm write 0x7E57 --size 2
is 1 '' 'orvtool shm: the memory has 8192 bytes, in whole pages\n' shm read 0x7E57 --offset 8192 --size 1
is 0 '' '1000\n' shm count 0x7E57 --offset 8 --times 1000
is 2 '' "orvtool shm: the number must stand at a multiple of 8. $(see shm)" shm count 0x7E57 --offset 4
kill %1
wait

is 0 '' 'b.c\n' path name 'D:/a/b.c'
is 0 '' 'D:\\x\n' path combine 'D:\a' '\x'
is 1 '' 'orvtool path: long failed: 0xE001003D (ORV_E_FILE_NOT_FOUND)\n' path long 'C:\no such file'
like 0 '[A-Z]:\\[^ ].* ' path temp
is 2 '' "orvtool path: a path is missing behind 'combine'. $(see path)" path combine
is 2 '' "orvtool path: one argument too many: 'b'. $(see path)" path name a b

key='HKCU\Software\OrvToolTest'
shown='HKCU\\Software\\OrvToolTest' # for printf
platform() { "$root/tools/run_wine.sh" reg.exe "$@" 2>/dev/null | tr -d '\r'; }
run reg set "$key" && run reg delete "$key" --recursive
is 1 '' "orvtool reg: opening the key of '$shown' failed: 0xE0010013 (ORV_E_KEY_NOT_FOUND)\n" reg query "$key"
while IFS='|' read -r name type data text; do
    read -r -a words <<<"$data"
    is 0 '' '' reg set "$key\\\\$name" --type "$type" -- "${words[@]}"
    is 0 '' "$text\n" reg get "$key\\\\$name"
done <<'VALUES'
|sz|C:\x|C:\\x
bytes|binary|00Ffa5|00ffa5
expand|expand_sz|%A%|%A%
multi|multi_sz|a b|a\nb
number|dword|42|0x0000002A
qword|qword|-2|0xFFFFFFFFFFFFFFFE
reverse|dword_be|0x102|0x00000102
strange|0x12345|0102|0102
VALUES
is 0 '' '' reg set "$key\\Below\\\\n" --type none ''
like 0 "last write  [-0-9]{10}T[:.0-9]{18}Z sub-keys    1 values      8  \(default\)  sz         C:.x .* strange    0x12345    0102 " \
    reg query "$key"
is 0 '' 'multi  multi_sz   a\\0b\n' reg query "$key\\\\multi"
is 0 '' 'Below\n' reg list HKEY_CURRENT_USER\\software\\ORVTOOLTEST
for value in /ve '/v bytes' '/v expand' '/v multi' '/v number' '/v reverse'; do
    # shellcheck disable=SC2086 # two words
    platform query "$key" $value | sed -n 's/^    .*\(REG_.*\)/\1/p'
done >"$work/out"
printf '%s\n' 'REG_SZ    C:\x' 'REG_BINARY    00FFA5' 'REG_EXPAND_SZ    %A%' 'REG_MULTI_SZ    a\0b' 'REG_DWORD    0x2a' \
    'REG_DWORD_BIG_ENDIAN    0x2010000' >"$work/expected"
same "reg set, read by the platform's tool" "$work/out" "$work/expected"
for value in 'REG_SZ|C:\y' 'REG_DWORD|0x2b|' 'REG_BINARY|0aff' 'REG_MULTI_SZ|c\0d'; do
    platform add "$key" /v theirs /t "${value%%|*}" /d "$(cut -d '|' -f 2 <<<"$value")" /f >/dev/null
    run reg get "$key\\\\theirs"
done >"$work/out"
printf '%s\n' 'C:\y' 0x0000002B 0aff c d >"$work/expected"
same "reg get of what the platform's tool wrote" "$work/out" "$work/expected"
is 0 '' '' reg delete "$key\\\\theirs"
is 1 '' "orvtool reg: deleting '$shown\\\\\\\\theirs' failed: 0xE001003D (ORV_E_FILE_NOT_FOUND)\n" reg delete "$key\\\\theirs"
is 1 '' "orvtool reg: '$shown' has sub-keys: they are deleted with --recursive only\n" reg delete "$key"
is 2 '' "orvtool reg: a root cannot be deleted: 'HKCU'. $(see reg)" reg delete HKCU --recursive
is 2 '' "orvtool reg: this is no location: '$shown\\\\'. $(see reg)" reg delete "$key\\"
is 2 '' "orvtool reg: a value is wanted, not the key '$shown'. $(see reg)" reg get "$key"
is 2 '' "orvtool reg: a key is wanted, not the value 'HKCU\\\\\\\\x'. $(see reg)" reg list 'HKCU\\x'
is 2 '' "orvtool reg: '16' is no value for '--view'. $(see reg)" reg list --view 16 HKCU
for value in 'dword 4294967296' 'qword -' 'binary 0' 'binary 0x' 'sz a b' 'sz' 'multi_sz '; do
    read -r -a words <<<"$value"
    [ "$value" != 'multi_sz ' ] || words+=('')
    is 2 '' "orvtool reg: the type wants other data than '${words[1]:-}'. $(see reg)" \
        reg set "$key\\None\\\\x" --type "${words[0]}" -- "${words[@]:1}"
done
is 0 '' 'Below\n' reg list "$key" # and no key None
grep -q '64-bit system *no' <(run info) &&
    is 1 '' "orvtool reg: selecting the view of '$shown' failed: 0xE001003A (ORV_E_VIEW_NOT_SUPPORTED)\n" reg list "$key" --view 64
is 3 '' "watching\norvtool reg: waiting for a change of '$shown' failed: 0xA0010004 (ORV_W_TIMEOUT)\n" reg watch "$key" --timeout 50
"$root/tools/run_wine.sh" "$tool" reg watch "$key" --subtree --timeout 60000 >"$work/watched" 2>/dev/null &
for _ in $(seq 100); do grep -q watching "$work/watched" && break || sleep 0.1; done
is 0 '' '' reg set "$key\\Below\\\\n" again
wait
printf 'watching\nchanged\n' >"$work/expected"
same 'reg watch --subtree' "$work/watched" "$work/expected"

# A tree that other programs understand too, and then one with every type, with data whose size does not fit its type, and
# with names that look like syntax: read, written, deleted, read again and written again.
version='Windows Registry Editor Version 5.00'
tree() { printf '%s\r\n' "$version" '' '[HKEY_CURRENT_USER\Software\OrvToolTest]' && sed 's/$/\r/'; }
tree >"$work/plain.reg" <<'TREE'
@="a \"quoted\" C:\\path; é€😀"
"binary"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,\
  16,17,18,19,1a,1b,1c,1d,1e,1f,20,21,22,23,24,25,26,27,28,29,2a,2b,2c,2d,2e,\
  2f,30
"empty"=""
"expand"=hex(2):25,00,41,00,25,00,00,00
"multi"=hex(7):61,00,00,00,00,00
"none"=hex(0):
"number"=dword:0000002a
"qword"=hex(b):ff,ff,ff,ff,ff,ff,ff,7f

[HKEY_CURRENT_USER\Software\OrvToolTest\a]

[HKEY_CURRENT_USER\Software\OrvToolTest\a\b]
"x"=dword:ffffffff

TREE
tree <<'TREE' | sed 's/NUL/\x0/' >"$work/strange.reg"
"@"="at"
"a\\b\"c=;]["="x"
"binary empty"=hex:
"dword 3"=hex(4):01,02,03
"dword be"=hex(5):00,00,00,2a
"expand odd"=hex(2):25
"inNULside"="x"
"inner end"=hex(1):61,00,00,00,62,00,00,00
"large type"=hex(ffffffff):00
"line
break"="x"
"link"=hex(6):41
"multi odd"=hex(7):61,00,00
"no bytes"=hex(1):
"no end"=hex(1):61,00
"none 1"=hex(0):ff
"odd"=hex(1):61,00,62
"qword 9"=hex(b):ff,ff,ff,ff,ff,ff,ff,7f,01
"resource"=hex(8):01
"two lines"=hex(1):61,00,0d,00,0a,00,00,00

[HKEY_CURRENT_USER\Software\OrvToolTest\] ; [x]
@=hex:01

TREE
for name in plain strange; do
    run reg delete "$key" --recursive
    run reg import "$work/$name.reg" >/dev/null
    (printf '\xff\xfe' && run convert --from utf-8 --to utf-16 "$work/$name.reg") >"$work/expected"
    run reg export "$key" "$work/once.reg"
    same "reg export of $name.reg" "$work/once.reg" "$work/expected"
    run reg delete "$key" --recursive
    run reg import <"$work/once.reg" >/dev/null
    run reg export "$key" >"$work/out"
    same "reg export of $name.reg once more" "$work/out" "$work/expected"
    [ $name = plain ] || continue
    platform export "$key" "Z:${work//\//\\}\\theirs.reg" /y >/dev/null
    same "reg export, beside the platform's tool" "$work/theirs.reg" "$work/expected"
    run reg delete "$key" --recursive
    platform import "Z:${work//\//\\}\\once.reg" >/dev/null
    run reg export "$key" >"$work/out"
    same "reg export, read by the platform's tool" "$work/out" "$work/expected"
done
entries() { printf '%s\n' "$version" "$@"; } # for input, where \\ is one backslash
is 0 "\xef\xbb\xbf$(entries ' ; c' "[HKCU\\\\Software\\\\OrvToolTest] ; c" '"odd" = - ;c' '"New"= DWORD:2a' '"none"=-' \
    "[-$shown\\\\] ; [x]" "[-$shown\\\\none]" "[$shown\\\\new]" '@=hex(7):61, 0 ,\\' ' ; no' | sed '$d')\n  00" \
    '2 keys, 2 values, 4 deletions\n' reg import -
is 1 '' "orvtool reg: reading '$shown\\\\\\\\odd' failed: 0xE001003D (ORV_E_FILE_NOT_FOUND)\n" reg get "$key\\\\odd"
is 0 '' 'new\n' reg list "$key"
while IFS='|' read -r line problem body; do
    is 1 "$(entries "[$shown\\\\Never]" '"x"="y"')\n$body" "orvtool reg: line $line: $problem\n" reg import
done <<'FAULTS'
4|the bracket is not closed|[HKCU\\x
4|this is no key|[HKCU\\x\\]
4|this is no key|[HKCU\\x\\\\y]
4|a root cannot be deleted|[-HKCU]
4|there is something behind the end of the entry|[HKCU] x
5|a value stands below no key|[-HKCU\\none]\n@=""
4|this is neither a key in brackets nor a value, '@' or a name in quotation marks|x=1
4|an equals sign is missing behind the name of the value|@ ""
4|the data is no text in quotation marks, dword:, hex:, hex(TYPE): or minus sign|@=x
4|dword: wants up to eight hexadecimal digits|@=dword:x
5|a byte of two hexadecimal digits is missing|@=hex:01,\\\n  ,
4|a backslash that continues the bytes does not end its line|@=hex:01,\\ 02
4|a backslash in quotation marks stands before neither a backslash nor a quotation mark|@="C:\\new"
4|the quotation marks are not closed|@="x\ny
4|this is neither UTF-16 behind a byte order mark nor UTF-8|;\xff
FAULTS
is 1 'REGEDIT4\n' 'orvtool reg: line 1: this is the older format, REGEDIT4, whose text depends on a code page; export it as version 5.00\n' reg import
is 1 '' "orvtool reg: line 1: the first line is not '$version'\n" reg import
is 0 '' 'new\n' reg list "$key" # and no key Never
is 1 '' "orvtool reg: making the file '$work/none/x' failed: 0xE001003E (ORV_E_PATH_NOT_FOUND)\n" reg export "$key" "$work/none/x"

# The output replaces the target when it is complete. A link stays a link, also one whose target does not exist yet.
(
    mkdir "$work/targets" && cd "$work/targets"
    echo old >end && ln -s end link && ln -s made dangling && cp end readonly && chmod 444 readonly && mkdir folder
)
run reg export "$key" >"$work/exported"
for target in end link dangling new; do
    is 0 '' '' reg export "$key" "$work/targets/$target"
    same "reg export to $target" "$work/targets/$target" "$work/exported"
done
# Until it is complete the target is unchanged, and after a failure no temporary file is left.
for target in readonly folder; do
    is 1 '' "orvtool reg: making the file '$work/targets/$target' failed: 0xE0010058 (ORV_E_ACCESS_DENIED)\n" \
        reg export "$key" "$work/targets/$target"
done
is 1 '' "orvtool reg: writing '/dev/full' failed: 0xE0010097 (ORV_E_DISK_FULL)\n" reg export "$key" /dev/full
code=0
{
    (ulimit -f 8 && "$root/tools/run_wine.sh" "$tool" reg export 'HKLM\Software' "$work/targets/end") || code=$?
} 2>/dev/null
judge 'the kernel ends what makes too long a file' [ "$code" -gt 128 ]
same 'reg export that was ended' "$work/targets/end" "$work/exported"
printf '%s\n' dangling end folder link made new readonly >"$work/expected"
same 'the folder behind all that' <(LC_ALL=C ls -A "$work/targets") "$work/expected"
same 'a target that cannot be written' "$work/targets/readonly" <(echo old)
judge 'a link stays one' [ -L "$work/targets/link" ]
judge 'a link that led nowhere stays one' [ -L "$work/targets/dangling" ]
run reg delete "$key" --recursive

like 0 'orvtool [0-9]+\.[0-9]+\.[0-9]+   zlib 1\.[0-9.]+ \(.+\)   bzip2 1\.[0-9.]+ \(.+\)   expat 2\.[0-9.]+ \(.+\) ' --version
printf '<a/>' >"$work/xml"
run deflate "$work/file" >"$work/zlib"
while read -r -a words; do
    call "${words[@]}" >/dev/full </dev/null
    judge "orvtool ${words[*]} >/dev/full: exit code $code, and it said: $(said)" \
        [ "$code $(said)" = '1 orvtool: writing to standard output failed: 0xE0010097 (ORV_E_DISK_FULL)' ]
done <<FULL
--version
base64 $work/file
bunzip2 $work/foo.bz2
bzip2 $work/file
convert --from utf-8 --to utf-16 $work/file
deflate $work/file
event create OrvToolTest
hash $work/file
info
inflate $work/zlib
reg export HKCU\\Software
reg list HKCU
shm serve 0x7E58 --size 1
xml format $work/xml
FULL
# If the reader closes the pipe, the command ends without a message.
for words in number 'random -n 4000000000'; do
    {
        code=0
        # shellcheck disable=SC2086 # several words
        ORV_RUN_SECONDS=20 "$root/tools/run_wine.sh" "$tool" $words < <(yes 1) 2>"$work/error" || code=$?
        printf '%s\n' "$code" >"$work/code"
    } | head -n 1 >/dev/null
    same "orvtool $words into a closed pipe" <(cat "$work/code" && said) <(echo 1)
done

like 0 'Usage: orvtool guid .*Usage: orvtool match .*Exit codes: .*' help guid match
for words in help 'help --help' 'help help'; do
    like 0 'Usage: orvtool COMMAND .*' $words
done
like 0 'Usage: orvtool number .*' lock "$work/lock" "$tool" number --help # the command's own
is 2 '' "orvtool: there is no command 'x'. See 'orvtool --help'.\n" help x
is 2 '' "orvtool: there is no option '--verbose' before a command. See 'orvtool --help'.\n" --verbose info

for command in $(run help | sed -n '/^Commands:/,$s/^  \([a-z0-9]*\) .*/\1/p'); do
    like 0 "Usage: orvtool $command .*" $command --help
    is 2 '' "orvtool $command: there is no option '--nonsense'. $(see $command)" $command --nonsense
done
if "$root/tools/orvtool_reference.sh" "$tool" | cmp -s - "$root/docs/orvtool.md"; then
    passed=$((passed + 1))
else
    failed=$((failed + 1))
    echo 'docs/orvtool.md is not what the tool says: run make reference'
fi

printf '%s passed, %s failed\n' "$passed" "$failed"
[ "$failed" -eq 0 ]
