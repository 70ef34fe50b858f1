#!/usr/bin/env python3
"""Writes the checksum of Quillon descriptions, for the bundled files.

The digest is SHA-256 over the file's text (line ends as single line feeds),
from the first "</checksum>" to the end; it stands between <checksum> and
</checksum>, the first child of the root. Quillon checks it at every load.

Usage: sign_description.py FILE...
"""
import hashlib
import re
import sys


def sign(path):
    with open(path, "r", encoding="utf-8", newline=None) as f:
        text = f.read()
    if "<checksum>" not in text:
        m = re.search(r'<nvxmlcfg version="\d\.\d\.\d">', text) or re.search(r'<nvxmlcfg version="\d\.\d">', text)
        if m:
            end = text.index(">", m.start()) + 1
            text = text[:end] + "\n\t<checksum>" + "0" * 64 + "</checksum>" + text[end:]
    close = text.find("</checksum>")
    if close < 0:
        sys.exit(f"No checksum element found in {path}")
    digest = hashlib.sha256(text[close:].encode("utf-8")).hexdigest()
    open_tag = text.find("<checksum>")
    text = text[:open_tag + len("<checksum>")] + digest + text[close:]
    with open(path, "w", encoding="utf-8", newline="\n") as f:
        f.write(text)
    print(f"{path}: {digest}")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    for p in sys.argv[1:]:
        sign(p)
