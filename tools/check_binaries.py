#!/usr/bin/env python3
"""Checks the built files against what the library promises, one check in each call:

  check_binaries.py imports READOBJ MODULE ALLOWED.dll[=FILE.def]...
      the module imports only these modules, and of a module with FILE.def only what that lists
  check_binaries.py oldest FILE.def NAMES
      every import that FILE.def lists is among the names, those that the oldest supported system has
  check_binaries.py exports READOBJ MODULE CLANG_CL INCLUDE
      the DLL exports exactly what the public headers declare for import: no implicit member, no internal function, and
      none is missing
  check_binaries.py headers CLANG_CL INCLUDE
      every public header compiles alone, for the compiler of Visual Studio 2017 and in the strict mode
  check_binaries.py initialisers READOBJ OBJECT...
      no object has a dynamic initialiser
  check_binaries.py size FILE BYTES
      the file is smaller than that
  check_binaries.py hardening READOBJ MODULE SOURCES
      the module can be loaded at any address, has no writable code and no writable constant, makes a random stack cookie
      and uses it, checks calls through pointers, and tells the loader the cookie, the exception handlers of the sources and
      the functions that may be called through pointers
  check_binaries.py natvis CLANG_CL INCLUDE NATVIS
      every expression that the debugger evaluates compiles within the type that it is for
  check_binaries.py start_code READOBJ LIBRARY
      every member of the library of start code is an object of the platform, for 32-bit x86 and fit for /safeseh, asks for
      no default library, and contains code of the compiler, not code that the linker must still generate
  check_binaries.py version HEADER MODULE...
      the modules' version resources have the version of the header

Prints a line for each fault and exits 1 if there is one.
"""

import json
import pathlib
import re
import struct
import subprocess
import tempfile
import xml.etree.ElementTree

import checks

TARGET = "--target=i686-pc-windows-msvc"


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def imports(readobj, module, *allowed):
    lists = {}
    for entry in allowed:
        name, _, definition = entry.partition("=")
        lists[name.lower()] = names_of(definition) if definition else None
    faults = []
    current = None
    seen = set()
    for line in run(readobj, "--coff-imports", module).splitlines():
        if match := re.match(r"\s+Name: (\S+)", line):
            current = match[1].lower()
            seen.add(current)
            if current not in lists:
                faults.append(f"imports {match[1]}")
        elif (match := re.match(r"\s+Symbol: (\S*)", line)) and lists.get(current) is not None:
            if match[1] not in lists[current]:
                faults.append(f"imports {match[1]} of {current}, which no list names")
    faults += [f"imports nothing of {name}" for name in lists if name not in seen]
    return faults


def names_of(definition):
    lines = pathlib.Path(definition).read_text().splitlines()
    names = [line.split("@")[0].strip() for line in lines[lines.index("EXPORTS") + 1:]]
    return {name for name in names if name and not name.startswith(";")}


def oldest(definition, names):
    present = {line for line in pathlib.Path(names).read_text().splitlines() if line and not line.startswith("#")}
    return [f"{name} is not exported by the oldest supported system: reach it as an optional function"
            for name in sorted(names_of(definition)) if re.sub("^Zw", "Nt", name) not in present]


def one_destructor(name):
    """The name without the kind of a destructor's symbol: the syntax tree names another one than the DLL exports."""
    match = re.match(r"\?\?(?:1|_D)(.+?@@)", name)
    return f"the destructor of {match[1]}" if match else name


def declared_for_import(clang_cl, include):
    """The mangled names of everything that the public headers declare for import."""
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "all.cpp"
        source.write_text('#include "orv/orv.h"\n')
        tree = json.loads(run(clang_cl, TARGET, "/nologo", f"/I{include}", "/Zs", "-Xclang", "-ast-dump=json",
                              str(source)))
    names = set()

    def visit(node):
        # A template itself has no symbol; its instantiations are its siblings in the tree.
        inner = node.get("inner", [])
        if any(child.get("kind") == "DLLImportAttr" for child in inner) and "mangledName" in node:
            names.add(one_destructor(node["mangledName"]))
        for child in inner:
            visit(child)

    visit(tree)
    return names


def exports(readobj, module, clang_cl, include):
    listed = re.findall(r"^\s+Name: (\S+)$", run(readobj, "--coff-exports", module), re.M)
    exported = {one_destructor(name) for name in listed}
    declared = declared_for_import(clang_cl, include)
    faults = [f"exports {name}, which no public header declares" for name in sorted(exported - declared)]
    faults += [f"does not export {name}, which a public header declares" for name in sorted(declared - exported)]
    return faults + ([] if exported else ["exports nothing"])


def headers(clang_cl, include):
    faults = []
    oldest = ["-fmsc-version=1910", "/std:c++14", "/EHsc", "/W4", "/WX"]  # Visual Studio 2017
    modes = (oldest, ["/permissive-", "/std:c++20", "/W4", "/WX"])
    found = sorted(pathlib.Path(include).rglob("*.h"))
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "alone.cpp"
        for header in found:
            name = header.relative_to(include)
            source.write_text(f'#include "{name}"\n')
            for mode in modes:
                result = subprocess.run([clang_cl, TARGET, "/nologo", f"/I{include}", "/Zs", *mode, str(source)],
                                        capture_output=True, text=True, check=False)
                if result.returncode or result.stderr:
                    faults.append(f"{name} {' '.join(mode)}: {result.stderr.strip()}")
        everything = (pathlib.Path(include) / "orv/orv.h").read_text()
        faults += [f"orv/orv.h does not include {header.relative_to(include)}" for header in found
                   if header.name != "orv.h" and f'"{header.relative_to(include)}"' not in everything]
    return faults + ([] if found else ["no header"])


def initialisers(readobj, *objects):
    return [f"{file} has dynamic initialisers" for file in objects
            if ".CRT$X" in run(readobj, "--section-headers", file)] + ([] if objects else ["no object"])


def size(file, most):
    actual = pathlib.Path(file).stat().st_size
    return [] if actual < int(most) else [f"{file} has {actual} bytes, not less than {most}"]


def hardening(readobj, module, sources):
    text = run(readobj, "--file-headers", "--section-headers", "--coff-load-config", module)
    faults = [f"{name} is missing" for name in ("DYNAMIC_BASE", "NX_COMPAT", "GUARD_CF")
              if f"IMAGE_DLL_CHARACTERISTICS_{name} " not in text]
    if "IMAGE_FILE_RELOCS_STRIPPED" in text or number_of(text, "BaseRelocationTableSize") == 0:
        faults.append("has no relocations")
    faults += [f"{field} is 0" for field in ("SecurityCookie", "SEHandlerTable", "SEHandlerCount",
                                             "GuardCFCheckFunction", "GuardCFFunctionTable", "GuardCFFunctionCount",
                                             "GuardFlags")
               if number_of(text, field) == 0]
    for section in text.split("Section {")[1:]:
        name = re.search(r"Name: (\S+)", section)[1]
        writable = "IMAGE_SCN_MEM_WRITE" in section
        if writable and ("IMAGE_SCN_MEM_EXECUTE" in section or "IMAGE_SCN_CNT_CODE" in section):
            faults.append(f"{name} holds code that can be written")
        if writable and number_of(section, "RawDataSize") > MOST_WRITABLE_VALUES:
            faults.append(f"{name} has {number_of(section, 'RawDataSize')} bytes of values that can be written: are there "
                          "constants among them?")
    # An exception whose handler is not listed would end the process.
    handlers = {name for source in pathlib.Path(sources).rglob("*.cpp")
                for name in re.findall(r"EXCEPTION_DISPOSITION __cdecl (\w+)\(", source.read_text())}
    if number_of(text, "SEHandlerCount") != len(handlers):
        faults.append(f"lists {number_of(text, 'SEHandlerCount')} exception handlers of {len(handlers)}")
    # Functions with arrays contain the address of the cookie, functions that call through pointers that of the check.
    content = pathlib.Path(module).read_bytes()
    cookie, check = (struct.pack("<I", number_of(text, field)) for field in ("SecurityCookie", "GuardCFCheckFunction"))
    if content.count(cookie) < LEAST_USES:
        faults.append("does not use its stack cookie")
    if content.count(check) < LEAST_USES:
        faults.append("does not check calls through pointers")
    store_register = rb"(?:\xA3|\x89[\x05\x0D\x15\x1D\x25\x2D\x35\x3D])"
    if not re.search(store_register + re.escape(cookie), content):
        faults.append("does not draw its stack cookie")
    return faults


def natvis(clang_cl, include, path):
    source = ['#include "orv/orv.h"']
    for number, kind in enumerate(xml.etree.ElementTree.parse(path).getroot()):
        texts = [text for element in kind.iter() for text in (element.get("Condition"),) if text]
        for element in kind.iter():
            if element.tag.endswith("}DisplayString"):
                texts += re.findall(r"\{(.+?)\}", element.text)
            elif len(element) == 0 and element is not kind:
                texts.append(element.text)
        expressions = []
        for text in texts:  # after a comma comes the format, at most with a length in brackets
            value, length = re.fullmatch(r"(.+?)(?:,(?:\[(.+?)\])?\w*)?", text).groups()
            expressions += [value, length] if length else [value]
        name = kind.get("Name").replace("*", "0")
        body = " ".join(f"(void)({expression});" for expression in expressions)
        source.append(f"struct Probe{number} : {name} {{ void Evaluate() {{ {body} }} }};")
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "probe.cpp"
        file.write_text("\n".join(source))
        # A debugger ignores access control. The probe derives from the type, also if that is final.
        compiled = subprocess.run([clang_cl, TARGET, "/nologo", f"/I{include}", "/Zs", "/Dfinal=", "-Xclang",
                                   "-fno-access-control", "-ferror-limit=0", str(file)], capture_output=True, text=True)
    return [line for line in compiled.stderr.splitlines() if ": error:" in line] or (
        ["nothing was compiled"] if compiled.returncode else [])


def start_code(readobj, library):
    members = re.split(r"^File: ", run(readobj, "--file-headers", "--symbols", "--coff-directives", "--sections", library),
                       flags=re.M)[1:]
    faults = [] if len(members) > 5 else [f"has {len(members)} members"]
    for member in members:
        name = member.splitlines()[0]
        if "Format: COFF-i386" not in member:
            faults.append(f"{name} is no object of the platform")
        if re.search("defaultlib", member, re.I):
            faults.append(f"{name} asks for a library")
        marker = re.search(r"Name: @feat\.00\n\s+Value: (\d+)", member)
        if not marker or not int(marker[1]) & 1:
            faults.append(f"{name} is not fit for /safeseh")
        if ".llvmbc" in member:
            faults.append(f"{name} has bitcode")
    return faults


def version(header, *modules):
    wanted = [int(number) for number in re.findall(r"OrvVersion\w+ = (\d+)", pathlib.Path(header).read_text())]
    faults = [] if len(wanted) == 3 and modules else ["no version, or no module"]
    for module in modules:
        content = pathlib.Path(module).read_bytes()
        start = content.find(struct.pack("<II", 0xFEEF04BD, 0x10000))  # the fixed part: signature and its own version
        found = struct.unpack_from("<4H", content, start + 8) if start >= 0 else ()
        if [found[i] for i in (1, 0, 3)] != wanted if found else True:
            faults.append(f"{module} says {found}, not {wanted}")
    return faults


# The initial values of a module's state fit into one unit of the file; a table that is not read-only would exceed it.
MOST_WRITABLE_VALUES = 0x200
# Far fewer than there are, but more than a module has that is compiled without both.
LEAST_USES = 20


def number_of(text, field):
    # "Name: 0x10", or with the names of its bits below it: "Name [ (0x10)".
    match = re.search(rf"\b{field}(?:: | \[ \()(0x[0-9A-Fa-f]+|\d+)", text)
    return int(match[1], 0) if match else 0


if __name__ == "__main__":
    checks.main(__doc__, imports, oldest, exports, headers, initialisers, size, hardening, natvis, start_code, version)
