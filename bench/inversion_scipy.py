#!/usr/bin/python3
"""One inversion with scipy (OpenBLAS, one thread) against ours, on the same problems, alternated.

usage: inversion_scipy.py build/release/bench/spectra_bench
"""
import os
os.environ.setdefault("OPENBLAS_NUM_THREADS", "1")
import statistics
import subprocess
import sys
import tempfile
import time

import numpy as np
from scipy.linalg.blas import dsyrk
from scipy.linalg.lapack import dpotrf, dpotri, dpotrs, dtrtrs


def read(path):
    with open(path, "rb") as f:
        m, n, k, count, removals = np.fromfile(f, np.int64, 5)
        init, following = np.fromfile(f, np.float64, 2)
        a = np.fromfile(f, np.float64, m * n).reshape(m, n)
        p = np.fromfile(f, np.float64, n * k).reshape(n, k)
        window = np.fromfile(f, np.float64, n * n).reshape(n, n)
        records = np.fromfile(f, np.float64, count * (2 * m + 1)).reshape(count, 2 * m + 1)
    return dict(m=m, a=a, at=np.asfortranarray(a.T), p=np.asfortranarray(p), window=window, removals=removals,
                init=init, next=following, records=records)


def invert(q, s, v):
    a, p = q["a"], q["p"]
    v = np.where(s < 0, v + s * s, v)
    w = 1.0 / v
    normal = dsyrk(1.0, q["at"] * np.sqrt(w), lower=1)
    y = q["at"] @ (w * s)
    diagonal = np.diagonal(normal).copy()
    n = len(y)
    at = np.arange(n)

    c = normal.copy(order="F")
    c[at, at] = diagonal * (1 + q["init"])
    factor, bad = dpotrf(c, lower=1, clean=0, overwrite_a=1)
    x0, _ = dpotrs(factor, y, lower=1)
    inverse, _ = dpotri(factor, lower=1, overwrite_c=1)
    r = np.maximum(np.diagonal(inverse) * q["next"] / (x0 * x0), q["init"]) @ q["window"]

    c = normal
    c[at, at] = diagonal * (1 + r)
    factor, bad = dpotrf(c, lower=1, clean=0)
    x, _ = dpotrs(factor, y, lower=1)
    full = x
    active = at
    for _ in range(q["removals"]):
        least = np.argmin(x)
        if not x[least] < 0:
            break
        active = np.delete(active, least)
        reduced, bad = dpotrf(np.asfortranarray(c[np.ix_(active, active)]), lower=1, clean=0, overwrite_a=1)
        x, _ = dpotrs(reduced, y[active], lower=1)
        full = np.zeros(n)
        full[active] = x
    d = a @ full - s
    rms = np.sqrt(d @ d / len(d))
    z, _ = dtrtrs(factor, p, lower=1)
    band = np.einsum("ij,ij->j", z, z), np.einsum("ij,ij->j", z[:, :-1], z[:, 1:])
    return full @ p, band, (rms, np.abs(d).mean(), d.sum())


def main():
    bench = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([bench, "--write", folder], check=True)
        for m, n in ((25, 30), (42, 60)):
            q = read(f"{folder}/{m}x{n}.problem")
            records = [(r[:m].copy(), r[m:2 * m].copy(), r[2 * m]) for r in q["records"]]
            for s, v, total in records:
                assert abs(invert(q, s, v)[0].sum() - total) <= 1e-9 * abs(total)
            ours, theirs = [], []
            for _ in range(7):
                ours.append(float(subprocess.run([bench, "--time", str(m), str(n)], check=True, capture_output=True,
                                                 text=True).stdout))
                rounds = []
                for _ in range(5):
                    start = time.perf_counter()
                    for s, v, _ in records:
                        invert(q, s, v)
                    rounds.append((time.perf_counter() - start) / len(records) * 1e6)
                theirs.append(statistics.median(rounds))
            ratio = statistics.median(t / o for t, o in zip(theirs, ours))
            print(f"{m} x {n}: ours {statistics.median(ours):.1f} us, scipy {statistics.median(theirs):.1f} us, "
                  f"ratio {ratio:.1f}")


main()
