#!/usr/bin/env python3
"""utf8_test.py QARREAD: compares all sequences of up to four bytes at the borders of UTF-8 with Python's decoder.

The borders are those of the Unicode standard's table of well-formed byte sequences. What is malformed becomes a U+FFFD
for each maximal subpart.
"""

import itertools
import os
import subprocess
import sys
import tempfile

BORDERS = bytes.fromhex("00 7f 80 8f 90 9f a0 bf c0 c1 c2 df e0 e1 ec ed ee ef f0 f1 f3 f4 f5 ff")

program = os.path.realpath(sys.argv[1])
sequences = [bytes(bytes_) for length in range(1, 5) for bytes_ in itertools.product(BORDERS, repeat=length)]
with tempfile.TemporaryDirectory() as work:
    path = os.path.join(work, "sequences.txt")
    with open(path, "wb") as file:
        file.write(b"\n".join(sequences))
    for name, codec in (("UTF-16LE", "utf-16-le"), ("UTF-8", "utf-8")):
        found = subprocess.run([program, "--transcode", f"UTF-8:{name}:txt", path], stdout=subprocess.PIPE, check=True)
        texts = found.stdout.decode(codec).split("\n")
        assert len(texts) == len(sequences), (name, len(texts))
        for sequence, text in zip(sequences, texts):
            wanted = sequence.decode("utf-8", "replace")
            assert text == wanted, f"{sequence.hex(' ')} to {name}: {text!a}, wanted {wanted!a}"
