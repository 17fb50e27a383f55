#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Exports are a decision: what the library shows is named rz..., rf... or roc_..., rimg_...,
rstd_..., nothing of the C++ library or of the private rooms leaks out of it."""
import re
import subprocess
import sys

# Type information and virtual tables of exported classes, and operators on exported types.
ALLOWED = re.compile(
    r"^(?:(?:vtable|typeinfo|typeinfo name|VTT|construction vtable|guard variable|"
    r"non-virtual thunk to|virtual thunk to) .*\b(?:rz|rf|r[a-z]+_)|.*\b(?:rz2?|rf)_?[A-Z]|"
    r"(?:roc|rimg|rstd|rsys)_)")
# Templates of the C++ library that the compiler instantiates as weak symbols are no decision of ours.
WEAK = {"W", "V", "u"}
# What sanitizers and coverage add of their own.
INSTRUMENTED = re.compile(r"__(?:odr_)?(?:asan|ubsan|tsan|gcov)")

listing = subprocess.run(["nm", "-D", "-C", "--defined-only", sys.argv[1]], capture_output=True,
                         text=True, check=True).stdout
leaked = []
for line in listing.splitlines():
    kind, name = line[17:].split(" ", 1)
    if kind not in WEAK and not ALLOWED.match(name) and not INSTRUMENTED.match(name):
        leaked.append(line)
print(f"{len(listing.splitlines())} symbols")
print("\n".join(leaked))
sys.exit(1 if leaked else 0)
