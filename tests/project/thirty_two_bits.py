#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Integers of interfaces and archives are 32 bits: the C++ type of 64 bits is named nowhere."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
found = []
for folder in ("include", "oc", "platform"):
    for path in sorted((root / folder).rglob("*")):
        if path.suffix not in (".h", ".cpp", ".c"):
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            if re.search(r"\blong\b", line):
                found.append(f"{path.relative_to(root)}:{number}: {line.strip()}")
print("\n".join(found) or "none")
sys.exit(1 if found else 0)
