#!/usr/bin/env bash
# Runs a compiler with relative paths instead of absolute ones: relative_paths.sh FOLDER RELATIVE COMMAND...
# It replaces paths into the build folder, which is the current folder, and into FOLDER, which contains it. The compiler
# writes its arguments into the debug information, and the DLL contains a digest of that: without this, two builds in
# different folders would differ.
folder=$1 relative=$2
shift 2
set -- "${@//"$PWD"/.}"
exec "${@//"$folder"/"$relative"}"
