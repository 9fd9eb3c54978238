"""How the checks of the house report: a line a fault, and 1 as the status if there is any."""

import sys
from pathlib import Path


def report(check):
    """Runs check(root) over the tree named on the command line, else over this one, and exits."""
    root = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent
    found = check(root)
    for fault in found:
        print(fault)
    sys.exit(1 if found else 0)
