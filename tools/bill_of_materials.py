#!/usr/bin/env python3
"""Prints the bill of materials of orvsys.dll, CycloneDX as JSON:

  bill_of_materials.py DEPENDENCIES.txt VERSION [LIBRARY ITS-VERSION PACKAGE-VERSION]...

VERSION is the DLL's own. The rest says what was built, which may be newer than what the file names.
"""

import json
import sys
import urllib.parse


def read_facts(path):
    """The facts of dependencies.txt by library, each with the list of its values."""
    facts = {}
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            words = line.split(None, 2)
            if len(words) == 3 and not line.startswith("#"):
                facts.setdefault(words[0], {}).setdefault(words[1], []).append(words[2].rstrip("\n"))
    return facts


def component(library, version, package, facts):
    archives = [archive.split(" ", 1) for archive in facts["archive"]] if package == facts["version"][0] else []
    sources = f"pkg:deb/debian/{library}@{urllib.parse.quote(package, safe='.~-')}?arch=source"
    return {
        "type": "library",
        "bom-ref": sources,
        "name": library,
        "version": version,
        "purl": sources,
        "licenses": [{"license": {"id": facts["license"][0]}}],
        "externalReferences": [{"type": "website", "url": facts["home"][0]}] + [
            {"type": "source-distribution", "url": name, "hashes": [{"alg": "SHA-256", "content": digest}]}
            for digest, name in archives
        ],
    }


def main(path, own_version, *contents):
    facts = read_facts(path)
    components = [component(*built, facts[built[0]]) for built in zip(*[iter(contents)] * 3)]
    own = f"pkg:generic/orvsys@{own_version}"
    bill = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.6",
        "version": 1,
        "metadata": {
            "component": {
                "type": "library",
                "bom-ref": own,
                "name": "orvsys",
                "version": own_version,
                "purl": own,
                "licenses": [{"license": {"id": "MIT"}}],
            }
        },
        "components": components,
        "dependencies": [{"ref": own, "dependsOn": [part["bom-ref"] for part in components]}],
    }
    json.dump(bill, sys.stdout, indent=2)
    print()


if len(sys.argv) < 3 or len(sys.argv) % 3:
    sys.exit(__doc__)
main(*sys.argv[1:])
