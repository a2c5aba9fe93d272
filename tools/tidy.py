#!/usr/bin/env python3
"""Runs clang-tidy over each file of a compilation database once: tidy.py BUILD_FOLDER [PART_OF_A_PATH...]"""

import concurrent.futures
import json
import os
import pathlib
import subprocess
import sys


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    build = pathlib.Path(sys.argv[1]).resolve()
    parts = sys.argv[2:]
    chosen = subprocess.run([root / "tools/llvm.sh", "clang-tidy"], stdout=subprocess.PIPE, text=True, check=True)
    tidy = chosen.stdout.strip()
    files = sorted({entry["file"] for entry in json.loads((build / "compile_commands.json").read_text())})
    ours = [file for file in files
            if pathlib.Path(file).is_relative_to(root) and not pathlib.Path(file).is_relative_to(build)
            and (not parts or any(part in file for part in parts))]

    def check(file):
        return file, subprocess.run(
            [tidy, "--quiet", f"-p={build}", file], capture_output=True, text=True)

    failed = False
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for file, run in pool.map(check, ours):
            if run.returncode:
                failed = True
                print(run.stdout, end="")
                print(run.stderr if not run.stdout else "", end="")
    if not ours:
        print("no file to check", file=sys.stderr)
    return 1 if failed or not ours else 0


if __name__ == "__main__":
    sys.exit(main())
