"""Runs one of several checks: the command line names it and gives it arguments."""

import sys


def main(usage, *checks):
    """Runs the check that the command line names. Prints a line for each fault and exits 1 if there is one."""
    by_name = {check.__name__: check for check in checks}
    if len(sys.argv) < 3 or sys.argv[1] not in by_name:
        sys.exit(usage)
    faults = by_name[sys.argv[1]](*sys.argv[2:])
    for fault in faults:
        print(fault)
    sys.exit(1 if faults else 0)
