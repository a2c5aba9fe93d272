#!/usr/bin/env python3
"""Checks that what the pages say is true, one check in each call:

  check_pages.py programs BIN
      each program that a page of the guide shows is the one in docs/guide/examples, runs, and prints what the page
      says; each program in that folder is in a page
  check_pages.py update BIN
      writes the programs and what they print into the pages instead
  check_pages.py commands BUILD
      each command in a page does what the page says: blocks marked `sh` are run, for each page in a folder of its own that
      looks like this repository with BUILD in it as build/release and contains the files that the page shows
  check_pages.py installed BUILD
      with nothing but a fresh installation and the compiler line of the README, each program that a page of the guide shows
      builds and prints what the page says, and so do the programs in tests/program
  check_pages.py layouts CLANG_CL READOBJ MODULE
      the tables of docs/abi.md say what the compiler says, and the module exports the names in them

A block that follows the words "`NAME`:" is that file, one that follows "prints:" is output. Prints a line for each fault
and exits 1 if there is one.
"""

import difflib
import os
import pathlib
import re
import subprocess
import tempfile

import checks

ROOT = pathlib.Path(__file__).resolve().parent.parent
EXAMPLES = ROOT / "docs/guide/examples"
BLOCK = re.compile(r"^```(?P<kind>\w+)\n(?P<text>.*?)^```$", re.M | re.S)


class Block:
    def __init__(self, page, match):
        before = page[:match.start()].rstrip().rsplit("\n\n", 1)[-1]
        name = re.search(r"`([\w./-]+)`:$", before)
        self.kind, self.text, self.start = match["kind"], match["text"], match.start("text")
        self.file = name[1] if name else None
        self.is_output = before.endswith("prints:") or before.endswith("print:")
        self.line = page.count("\n", 0, match.start()) + 2


def blocks_of(page):
    text = page.read_text()
    return [Block(text, match) for match in BLOCK.finditer(text)]


def difference(what, wanted, actual):
    lines = difflib.unified_diff(wanted.splitlines(), actual.splitlines(), "wanted", what, lineterm="", n=1)
    return f"{what} differs:\n" + "\n".join(lines)


def run(command, folder, environment=None, shell=False, seconds=120):
    """The exit code and the output, including standard error."""
    try:
        done = subprocess.run(command, cwd=folder, shell=shell, executable="/bin/bash" if shell else None, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              env={**os.environ, **(environment or {})}, timeout=seconds, check=False)
        return done.returncode, done.stdout
    except subprocess.TimeoutExpired:
        return None, f"did not end within {seconds} seconds"


# The programs of the guide.

def output_of(program, folder):
    code, text = run([str(ROOT / "tools/run_wine.sh"), f"guide_{program}.exe"], folder)
    return text.replace("\r", "") + ("" if code == 0 else f"\n{program} ended with {code}\n")


def shown_programs():
    """For each program: its page, its block, and the block of its output or None."""
    for page in sorted((ROOT / "docs/guide").glob("*.md")):
        blocks = blocks_of(page)
        for i, block in enumerate(blocks):
            if block.file and block.kind == "cpp":
                following = blocks[i + 1] if i + 1 < len(blocks) and blocks[i + 1].is_output else None
                yield page, block, following


def programs(folder):
    faults = []
    seen = set()
    for page, block, printed in shown_programs():
        seen.add(block.file)
        faults += [difference(f"{page.name}: {block.file}", (EXAMPLES / block.file).read_text(), block.text)] \
            if (EXAMPLES / block.file).read_text() != block.text else []
        program = pathlib.Path(block.file).stem
        actual = output_of(program, folder)
        wanted = printed.text if printed else ""
        faults += [difference(f"what {program} prints", wanted, actual)] if wanted != actual else []
    unseen = {file.name for file in EXAMPLES.glob("*.cpp")} - seen
    return faults + [f"no page shows {name}" for name in sorted(unseen)] + ([] if seen else ["no program"])


def update(folder):
    changes = {}
    for page, block, printed in shown_programs():
        changes.setdefault(page, []).append((block, (EXAMPLES / block.file).read_text()))
        if printed:
            changes[page].append((printed, output_of(pathlib.Path(block.file).stem, folder)))
    for page, pieces in changes.items():
        text = page.read_text()
        for block, content in reversed(pieces):
            text = text[:block.start] + content + text[block.start + len(block.text):]
        page.write_text(text)
    return []


# The commands.

# Commands that would run this check once more, and the check that runs each of them instead.
ELSEWHERE = {
    "make demo": "a run of its own",
    "make test": "this is a part of it",
    "make lint": "a run of its own",
    "make docs": "the check of the documentation",
}
# What make does after everything is built: the commands of a page must not start another build in the build under test.
STANDS_FOR = [(r"^make install PREFIX=(\S+)$", r'cmake --install build/release --prefix "\1" >/dev/null')]
# Blocks of these kinds hold no commands.
NO_COMMANDS = {"bat", "cpp", "cmake", "text"}


def pages():
    return [ROOT / "README.md", *sorted((ROOT / "docs").rglob("*.md"))]


def commands(build):
    faults = []
    count = 0
    for page in pages():
        with tempfile.TemporaryDirectory(prefix="a folder's ä ") as folder:
            faults += run_page(page, look_like_the_repository(pathlib.Path(folder), pathlib.Path(build).resolve()))
            count += sum(block.kind == "sh" for block in blocks_of(page))
    print(f"{count} blocks of commands were run")
    return faults + ([] if count else ["no command"])


def look_like_the_repository(folder, build):
    for entry in ROOT.iterdir():
        if entry.name not in ("build", ".git"):
            (folder / entry.name).symlink_to(entry)
    (folder / "build").mkdir()
    (folder / "build/release").symlink_to(build)
    return folder


def run_page(page, folder):
    where = page.relative_to(ROOT)
    # Commands in any other form would not be run.
    faults = [f"{where}: a command outside a block marked `sh`: {line.strip()}"
              for line in re.findall(r"^ {4,}(?:make|cmake|tools/|clang-cl).*", BLOCK.sub("", page.read_text()), re.M)]
    platform = os.environ.get("ORV_PLATFORM", "wine10").replace("wine10", "wine") # as tools/lib.sh has it
    environment = {"ORV_WINEPREFIX": os.environ.get("ORV_WINEPREFIX", str(ROOT / "build" / platform))}
    blocks = blocks_of(page)
    for block, following in zip(blocks, [*blocks[1:], None]):
        if block.kind == "sh":
            faults += run_commands(f"{where}:{block.line}", block, following, folder, environment)
        elif block.kind not in NO_COMMANDS:
            faults.append(f"{where}:{block.line}: a block marked `{block.kind}`, which nobody runs")
        elif block.file:
            (folder / block.file).parent.mkdir(parents=True, exist_ok=True)
            (folder / block.file).write_text(block.text)
    return faults


def run_commands(where, block, following, folder, environment):
    script = ["set -e"]
    for line in block.text.replace("\\\n", " ").splitlines():
        if line in ELSEWHERE:
            continue
        for pattern, replacement in STANDS_FOR:
            line = re.sub(pattern, replacement, line)
        script.append(line)
    code, text = run("\n".join(script), folder, environment, shell=True)
    text = text.replace("\r", "")
    if code != 0:
        return [f"{where} ended with {code}:\n{text}"]
    if following and following.is_output and following.text != text:
        return [difference(f"what {where} prints", following.text, text)]
    return []


# The installation.

# For each program of tests/program: the options added to the README's line, its arguments, its exit code and its output.
# vectorcall needs SSE.
START = ["two words", "", '\\"'], 42, "abcCBA, 0 faults\n"
PROGRAMS = [
    ("start_program", "/Od -msse2", "", *START),
    ("start_program", "/O2 -msse2 /guard:cf", "/guard:cf", *START),
    ("native_program", "/O2", "/entry:DenormalisedEntry", ["a b"], 2, "[a b]"),
    ("native_program", "/Od", "/entry:BareEntry", ["ignored"], 1, "[by the image]"),
]


def installed(build):
    line = next(block.text for block in blocks_of(ROOT / "README.md") if block.text.startswith('"$(tools/llvm.sh clang-cl)"'))
    shown = [(block.file.removesuffix(".cpp"), block.text, "", "", [], 0, printed.text if printed else "")
             for _, block, printed in shown_programs()]
    ours = [(name, (ROOT / f"tests/program/{name}.cpp").read_text(), *rest) for name, *rest in PROGRAMS]
    faults = []
    with tempfile.TemporaryDirectory(prefix="a user ") as folder:
        first = look_like_users(pathlib.Path(folder), build)
        for name, text, options, link_options, arguments, wanted_code, wanted in [*shown, *ours]:
            (first / "first.cpp").write_text(text)
            command = line.replace("/W4", f"/W4 /WX {options}").replace("/link", f"/link {link_options}")
            code, said = run(command, folder, shell=True)
            if code == 0:
                code, said = run([str(ROOT / "tools/run_wine.sh"), "first.exe", *arguments], first)
            if (code, said.replace("\r", "")) != (wanted_code, wanted):
                faults.append(f"{name} {options}, built from the installation, ended with {code}:\n{said}")
    return faults + ([] if shown else ["no program"])


def look_like_users(folder, build):
    """Makes a folder with an installation and the script that finds the compiler. Returns the program's folder."""
    run(["cmake", "--install", str(pathlib.Path(build).resolve()), "--prefix", str(folder / "orv")], folder)
    (folder / "tools").symlink_to(ROOT / "tools")
    (folder / "first").mkdir()
    (folder / "first/orvsys.dll").symlink_to(folder / "orv/bin/orvsys.dll")
    return folder / "first"


# The binary interface.

def rows(text, heading, cells):
    """The rows of the tables in a chapter, without their header rows."""
    chapter = re.search(rf"^## {heading}\n(.*?)(?=^## |\Z)", text, re.M | re.S)[1]
    found = [[cell.strip() for cell in line.strip("|").split("|")] for line in chapter.splitlines()
             if line.startswith("| `")]
    return [row for row in found if len(row) == cells]


def layouts(clang_cl, readobj, module):
    text = (ROOT / "docs/abi.md").read_text()
    sizes, slots = rows(text, "Layouts", 3), rows(text, "Slots", 2)
    return check_sizes(clang_cl, sizes) + check_slots(clang_cl, slots) + check_names(text, readobj, module) + \
        check_complete(text) + ([] if sizes and slots else ["no table"])


def compiled(clang_cl, lines, *options):
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "layouts.cpp"
        source.write_text("\n".join(['#include "orv/orv.h"', *lines, ""]))
        return run([clang_cl, "--target=i686-pc-windows-msvc", "/nologo", f"/I{ROOT / 'include'}", "/c", str(source),
                    f"/Fo{folder}/layouts.obj", "-Xclang", "-fno-access-control", "-Wno-invalid-offsetof", *options],
                   folder)


def check_sizes(clang_cl, table):
    asserts = []
    for name, size, fields in table:
        size, _, alignment = size.partition(", aligned at ")
        name = name.strip("`")
        facts = [(f"sizeof({name})", size), (f"alignof({name})", alignment or "4")]
        # A macro would split a template's arguments at their comma.
        facts += [(f"__builtin_offsetof({name}, {field})", offset)
                  for field, offset in re.findall(r"`(\w+)` (\d+)", fields)]
        asserts += [f'static_assert({fact} == {value}, "docs/abi.md: {fact} is not {value}");' for fact, value in facts]
    code, said = compiled(clang_cl, asserts)
    return list(dict.fromkeys(re.findall(r"docs/abi.md: .*(?=\")", said))) or ([said] if code else [])


def check_slots(clang_cl, table):
    # A constructor out of line makes the compiler emit the table.
    derived = []
    for i, name in enumerate(name.strip("`") for name, _ in table):
        base = "OrvBasWinHandleWaitable(nullptr, false)" if name == "OrvBasWinHandleWaitable" else f"{name}()"
        derived.append(f"struct T{i} : {name} {{ T{i}(); }}; T{i}::T{i}() : {base} {{}}")
    code, said = compiled(clang_cl, derived, "-Xclang", "-fdump-vtable-layouts")
    faults = [said] if code else []
    for i, (name, promised) in enumerate(table):
        dump = re.search(rf"^VFTable for .*'T{i}' \(.*\n((?:   .*\n)+)", said, re.M)
        entries = dump[1].splitlines() if dump else []
        actual = [re.search(r"(~?\w+)\(", entry)[1] for entry in entries if "RTTI" not in entry]
        actual = ", ".join("destructor" if entry.startswith("~") else f"`{entry}`" for entry in actual)
        faults += [f"docs/abi.md: the slots of {name} are {actual}"] if actual != promised else []
    return faults


def check_names(text, readobj, module):
    exported = set(re.findall(r"^\s+Name: (\S+)$", run([readobj, "--coff-exports", module], ROOT)[1], re.M))
    named = set(re.findall(r"`(\?[^` ]+@[^` ]+)`", text))
    return [f"docs/abi.md: {name} is not exported" for name in sorted(named - exported)] + ([] if named else ["no name"])


def check_complete(text):
    """A fault for each type that a public header defines and the page does not name."""
    named = set(re.findall(r"\w+", " ".join(re.findall(r"`[^`]+`", text))))
    found = {name.rsplit("::", 1)[-1] for header in sorted((ROOT / "include").rglob("*.h"))
             for name in re.findall(r"^(?:class|struct) ([\w:]+)[^;]*?\n?\{", header.read_text(), re.M)}
    return [f"docs/abi.md does not name {name}" for name in sorted(found - named)]


if __name__ == "__main__":
    checks.main(__doc__, programs, update, commands, installed, layouts)
