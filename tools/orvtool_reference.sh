#!/usr/bin/env bash
# Prints the reference page of orvtool, docs/orvtool.md, from the tool's own help: orvtool_reference.sh ORVTOOL
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

tool=$1
help() { "$root/tools/run_wine.sh" "$tool" help "$@" 2>/dev/null | tr -d '\r' | sed '/^Exit codes: /d' | sed '${/^$/d}'; }

commands=$(help | sed -n '/^Commands:/,$s/^  \([a-z0-9]*\) .*/\1/p')
cat <<'PAGE'
# orvtool

The library's reference consumer: a console program that imports nothing but `ntdll.dll` and `orvsys.dll`. This page
contains the output of `orvtool help` and `orvtool help COMMAND`; `make reference` writes it again.

PAGE
printf '```text\n%s\n```\n\n' "$(help)"
cat <<'PAGE'
Standard output receives the answers and nothing else. Standard error receives the errors, with what to do about them. Text
is written to a console in the console's own code page, and to a pipe or file in UTF-8. Arguments are UTF-16, split as the
platform's `CommandLineToArgvW` splits them; `--` ends the options. Progress is shown only on a console.

| Exit code | Meaning |
|---|---|
| 0 | success |
| 1 | failed, with the reason or the result code on standard error; or the answer is no, for example because nothing matches |
| 2 | wrong usage |
| 3 | timed out |

`lock` ends with the exit code of the command that it ran.
PAGE
for command in $commands; do
    printf '\n## %s\n\n```text\n%s\n```\n' "$command" "$(help "$command")"
done
