#!/usr/bin/env python3
"""Makes and checks the NuGet package for projects of Visual Studio, from an installation:

  nuget.py make INSTALLATION VERSION PACKAGE
      writes the package; the same files give the same bytes
  nuget.py check INSTALLATION VERSION PACKAGE
      its XML is well-formed, says this version, and names the type of every file; every file that it refers to is inside;
      headers, libraries and modules are those that are installed. This cannot show that Visual Studio accepts it.

Prints a line for each fault and exits 1 if there is one.
"""

import pathlib
import posixpath
import re
import xml.etree.ElementTree
import zipfile

import checks

TEMPLATES = pathlib.Path(__file__).resolve().parent.parent / "cmake/nuget"
NATIVE = "build/native"
# Where the files of an installation are in the package.
PLACES = [
    ("include/**/*.h", f"{NATIVE}/include", "include"),
    ("lib/*.lib", f"{NATIVE}/lib/x86", "lib"),
    ("bin/orvsys.*", f"{NATIVE}/bin/x86", "bin"),
    ("share/orvsys/orvsys.natvis", NATIVE, "share/orvsys"),
    ("share/orvsys/orvsys.cdx.json", "", "share/orvsys"),
    ("share/doc/orvsys/README.md", "", "share/doc/orvsys"),
    ("share/doc/orvsys/licenses/*.txt", "licenses", "share/doc/orvsys/licenses"),
]
MANIFEST = "http://schemas.microsoft.com/packaging/2010/07/manifest"
RELATIONSHIPS = "http://schemas.openxmlformats.org/package/2006/relationships"
CONTENT_TYPES = "http://schemas.openxmlformats.org/package/2006/content-types"


def installed_files(installation):
    """The bytes of the files from an installation, by their names in the package."""
    root = pathlib.Path(installation)
    files = {posixpath.join(place, file.relative_to(root / base).as_posix()): file.read_bytes()
             for pattern, place, base in PLACES for file in root.glob(pattern)}
    files["LICENSE.txt"] = (root / "share/doc/orvsys/LICENSE").read_bytes()
    return files


def make(installation, version, package):
    files = installed_files(installation)
    files["orvsys.nuspec"] = (TEMPLATES / "orvsys.nuspec.in").read_text().replace("@VERSION@", version).encode()
    for name in ("orvsys.props", "orvsys.targets"):
        files[f"{NATIVE}/{name}"] = (TEMPLATES / name).read_bytes()
    files["_rels/.rels"] = (
        f'<?xml version="1.0" encoding="utf-8"?>\n<Relationships xmlns="{RELATIONSHIPS}">\n'
        f'  <Relationship Type="{MANIFEST}" Target="/orvsys.nuspec" Id="manifest" />\n</Relationships>\n').encode()
    types = {extension_of(name): "application/octet" for name in files}
    types["rels"] = "application/vnd.openxmlformats-package.relationships+xml"
    rows = "".join(f'  <Default Extension="{extension}" ContentType="{kind}" />\n' for extension, kind in sorted(types.items()))
    files["[Content_Types].xml"] = (
        f'<?xml version="1.0" encoding="utf-8"?>\n<Types xmlns="{CONTENT_TYPES}">\n{rows}</Types>\n').encode()
    with zipfile.ZipFile(package, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in sorted(files.items()):
            archive.writestr(zipfile.ZipInfo(name), content, zipfile.ZIP_DEFLATED)  # the time is always in 1980
    return []


def extension_of(name):
    return posixpath.basename(name).rpartition(".")[2]


def check(installation, version, package):
    with zipfile.ZipFile(package) as archive:
        files = {name: archive.read(name) for name in archive.namelist()}
    faults = [f"{name} is not what is installed" for name, content in installed_files(installation).items()
              if files.get(name) != content]
    trees = {}
    for name, content in files.items():
        if extension_of(name) in ("xml", "rels", "nuspec", "props", "targets", "natvis"):
            try:
                trees[name] = xml.etree.ElementTree.fromstring(content)
            except xml.etree.ElementTree.ParseError as error:
                faults.append(f"{name}: {error}")
    known = {row.get("Extension") for row in trees["[Content_Types].xml"]}
    faults += [f"the type of {name} is not named" for name in files
               if name != "[Content_Types].xml" and extension_of(name) not in known]
    faults += [f"{row.get('Target')} is related, but not inside" for row in trees["_rels/.rels"]
               if row.get("Target").lstrip("/") not in files]
    facts = {element.tag.rpartition("}")[2]: element.text for element in trees["orvsys.nuspec"].iter()}
    faults += [f"the manifest has no {fact}" for fact in ("id", "version", "authors", "description") if not facts.get(fact)]
    if facts.get("version") != version or facts.get("license") != "MIT" or facts.get("readme") not in files:
        faults.append("the manifest names another version or licence, or a page that is not inside")
    return faults + references(files)


def references(files):
    """What the files of the build refer to: a file or folder in the package, or a library."""
    folders = {posixpath.dirname(name) for name in files}
    faults, count = [], 0
    for name in (f"{NATIVE}/orvsys.props", f"{NATIVE}/orvsys.targets"):
        text = files[name].decode()
        named = [posixpath.join(NATIVE, path.replace("\\", "/"))
                 for path in re.findall(r'\$\(MSBuildThisFileDirectory\)([^;"<]+)', text)]
        named += [f"{NATIVE}/lib/x86/{library}" for library in re.findall(r"[\w.]+\.lib", text)]
        faults += [f"{name} names {path}, which is not inside" for path in named
                   if path not in files and not any((folder + "/").startswith(path + "/") for folder in folders)]
        count += len(named)
    return faults + ([] if count else ["the build names nothing"])


if __name__ == "__main__":
    checks.main(__doc__, make, check)
