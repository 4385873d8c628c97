#!/usr/bin/env python3
"""A million lines from arrays: Python against a loop of the same calls in C++, in turns: compose_lines.py BASELINE"""

import statistics
import subprocess
import sys
import time

import numpy as np
import qvtools as qv

LINES, TURNS = 1_000_000, 7
start, end = np.random.default_rng(1).uniform(0, 9000, (2, LINES, 2)).astype(np.float32)
times = {"Document.add_lines": ([], []), "Composer.lines": ([], [])}
for _ in range(TURNS):
    for line in subprocess.run([sys.argv[1]], capture_output=True, text=True, check=True).stdout.splitlines():
        name, milliseconds = line.split()
        times[name][0].append(float(milliseconds))
    for name, draw in (("Document.add_lines", qv.Document().add_lines), ("Composer.lines", qv.Composer(50).lines)):
        before = time.perf_counter()
        draw(start, end)
        times[name][1].append(1000 * (time.perf_counter() - before))
for name, (loop, python) in times.items():
    loop, python = statistics.median(loop), statistics.median(python)
    print(f"{name}: {python:.0f} ms a million, the loop in C++ {loop:.0f} ms: ratio {python / loop:.2f}")
