#!/usr/bin/env bash
# Runs a compiler with relative paths below a folder in place of absolute ones: relative_paths.sh FOLDER RELATIVE COMMAND...
# The compiler writes its arguments into the debug information, and the DLL carries a digest of that: without this, two
# builds in different folders would differ.
folder=$1 relative=$2
shift 2
exec "${@//$folder/$relative}"
