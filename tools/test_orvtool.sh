#!/usr/bin/env bash
# The commands of orvtool that need nothing but arguments and input, case by case: test_orvtool.sh ORVTOOL
# Prints what differs, and a last line "N passed, N failed".
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

tool=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

# is CODE INPUT OUTPUT ARGUMENT...: orvtool, given INPUT, prints OUTPUT and ends with CODE. INPUT and OUTPUT may have
# escapes of printf; what orvtool says on standard error stands behind what it prints.
is() {
    local code=0 expected=$1
    printf '%b' "$2" >"$work/in"
    printf '%b' "$3" >"$work/expected"
    shift 3
    "$root/tools/run_wine.sh" "$tool" "$@" <"$work/in" >"$work/out" 2>"$work/error" || code=$?
    grep -a '^orvtool' "$work/error" | tr -d '\r' >>"$work/out" || true
    if [ "$code" -eq "$expected" ] && cmp -s "$work/out" "$work/expected"; then
        passed=$((passed + 1))
        return
    fi
    failed=$((failed + 1))
    printf 'orvtool %s: exit code %s, not %s, or another output:\n' "$*" "$code" "$expected"
    diff -a "$work/expected" "$work/out" || true
}

# like CODE PATTERN ARGUMENT...: the same where only a pattern for the whole standard output can be given: an extended
# regular expression, with blanks for line ends.
like() {
    local code=0 expected=$1 pattern=$2
    shift 2
    "$root/tools/run_wine.sh" "$tool" "$@" </dev/null >"$work/out" 2>/dev/null || code=$?
    if [ "$code" -eq "$expected" ] && [[ $(tr '\n' ' ' <"$work/out") =~ ^($pattern)$ ]]; then
        passed=$((passed + 1))
        return
    fi
    failed=$((failed + 1))
    printf 'orvtool %s: exit code %s, not %s, or no match: %s\n' "$*" "$code" "$expected" "$(cat "$work/out")"
}

repeat() { # repeat TEXT TIMES
    local i
    for ((i = 0; i < $2; i++)); do printf '%s' "$1"; done
}

see() { printf "See 'orvtool %s --help'.\\\\n" "$1"; }

printf 'foo' >"$work/file"

is 0 '' '\n' base64
is 0 'f' 'Zg==\n' base64
is 0 '\x00\xff\x10' 'AP8Q\n' base64 -
is 0 '' 'Zm9v\n' base64 "$work/file"
is 0 "$(repeat foo 3000)" "$(repeat Zm9v 3000)\n" base64
is 1 '' 'orvtool base64: opening the file failed: 0xE001003D (ORV_E_FILE_NOT_FOUND)\n' base64 "$work/none"
is 0 'AP8Q' '\x00\xff\x10' base64 -d
is 0 ' Zm\r\n9v\tZg==\n' 'foof' base64 --decode
is 0 "$(repeat Zm9v 3000)\n" "$(repeat foo 3000)" base64 -d
is 0 'Zm9v' 'foo' base64 -d --strict
is 1 'Zm9v\n' 'orvtool base64: this is no Base64 at offset 4\n' base64 -d --strict
is 1 'Zm 9v!Zm9v' 'orvtool base64: this is no Base64 at offset 5\n' base64 -d
is 1 'Zg==\nZg==' 'orvtool base64: this is no Base64 at offset 5\n' base64 -d
is 1 'Zm9vZ===' 'orvtool base64: this is no Base64 at offset 5\n' base64 -d
is 1 'Zm9vZg=x' 'orvtool base64: this is no Base64 at offset 7\n' base64 -d
is 1 '\xe9' 'orvtool base64: this is no Base64 at offset 0\n' base64 -d
is 1 'Zm9vZg' 'orvtool base64: the text ends inside a group at offset 6\n' base64 -d
is 2 '' "orvtool base64: there is no option '-x'. $(see base64)" base64 -x
is 2 '' "orvtool base64: one argument too many: 'b'. $(see base64)" base64 a b

guid='[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12} '
like 0 "$guid" guid
like 0 "($guid){3}" guid -n 3
like 0 '([0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12} ){2}' guid --random -n 2
like 0 '' guid -n 0
like 2 '' guid -n
like 2 '' guid 5

is 0 '' 'abc\nabbc\n' match 'a*c' abc ac.d abbc
is 0 '' 'A.TXT\n' match -i '*.txt' A.TXT b
is 1 '' '' match '*.txt' A.TXT
is 0 'a.txt\r\nb.c\n\nd.txt' 'a.txt\nd.txt\n' match '*.txt'
is 0 '\xc3\xa9t\xc3\xa9\n' '\xc3\xa9t\xc3\xa9\n' match --ignore-case '?T?'
is 1 '' '' match '*'
is 0 '' '-i\n' match -- -i -i
is 2 '' "orvtool match: a pattern is missing. $(see match)" match -i

is 0 '' '31 0x1F\n-5 0xFFFFFFFFFFFFFFFB\n' number 0x1f -5
is 0 '' '255 0xFF\n' number ff --radix 16
is 0 '12\n9223372036854775807\n' '12 0xC\n9223372036854775807 0x7FFFFFFFFFFFFFFF\n' number
is 1 '' "12 0xC\norvtool number: this is no number at offset 2: '12x'\n" number 12 12x 13
is 1 '1\n1 2\n3\n' "1 0x1\norvtool number: line 2 is no number at offset 1: '1 2'\n" number
is 1 '' "orvtool number: this is no number at offset 0: ''\n" number ''
is 1 '' "orvtool number: this is no number at offset 18: '9223372036854775808'\n" number 9223372036854775808
is 2 '' "orvtool number: the radix is 2 to 36, or 0, not '37'. $(see number)" number --radix 37 1

is 0 '' '89400484\n976015093\n' random -n 2
like 2 '' random x

for command in base64 guid match number random; do
    like 0 "Usage: orvtool $command .*" $command --help
done

printf '%s passed, %s failed\n' "$passed" "$failed"
[ "$failed" -eq 0 ]
