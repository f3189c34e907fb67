"""Cuts and changes an archive in many places: damage.py UNPACK ARCHIVE TREE. Whatever of that unpacks must be the tree."""

import os
import subprocess
import sys

unpack, archive, tree = sys.argv[1:]
data = open(archive, "rb").read()
used = len(data.rstrip(b"\0"))  # without the end mark of a plain tar
step = max(1, used // 60)


def noticed(damaged):
    with open("damaged", "wb") as file:
        file.write(damaged)
    done = subprocess.run([unpack, "damaged", "out"], stderr=subprocess.PIPE, check=False)
    if done.returncode == 0:
        subprocess.run(["diff", "-r", "--no-dereference", tree, "out"], check=True)
        subprocess.run(["rm", "-r", "out"], check=True)
    else:
        assert done.returncode == 1 and done.stderr.count(b"\n") == 1, done
        assert sorted(os.listdir()) == ["damaged"], os.listdir()
    return done.returncode == 1


for at in [*range(0, used, step), *range(0, used, 512)]:
    assert noticed(data[:at]), f"cut at {at}"
changes = [noticed(data[:at] + bytes([data[at] ^ 0x55]) + data[at + 1 :]) for at in range(0, used, step)]
assert sum(changes) > len(changes) / 3, f"{sum(changes)} of {len(changes)} changes were noticed"
