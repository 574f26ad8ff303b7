#!/usr/bin/python3
"""The plug-in offers one function and nothing else.

Usage: plugin_exports.py NM LIBRARY
"""

import subprocess
import sys

nm, library = sys.argv[1:]
table = subprocess.run([nm, "-D", "--defined-only", library], check=True, capture_output=True, text=True)
exported = sorted(line.split()[-1] for line in table.stdout.splitlines())
if exported != ["zarn_startmaindebug"]:
    sys.exit(f"{library} exports {', '.join(exported) or 'nothing'}")
