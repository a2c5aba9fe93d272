#!/usr/bin/env bash
# Runs a compiler with relative paths in place of absolute ones, for what lies in the build folder, where it runs, and in a
# folder around that: relative_paths.sh FOLDER RELATIVE COMMAND...
# The compiler writes its arguments into the debug information, and the DLL carries a digest of that: without this, two
# builds in different folders would differ.
folder=$1 relative=$2
shift 2
set -- "${@//"$PWD"/.}"
exec "${@//"$folder"/"$relative"}"
