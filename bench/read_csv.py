#!/usr/bin/python3
"""Reads a day file of one block with pandas.read_csv (C engine, times as text) and prints the seconds of each round."""
import sys
import time

import pandas


def header_rows(path):
    with open(path, encoding="utf-8") as lines:
        for count, line in enumerate(lines):
            if not line.startswith("#"):
                return count
    return 0


def main():
    path, rounds = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 5
    separator = sys.argv[3] if len(sys.argv) > 3 else "\t"
    skipped = header_rows(path)
    for _ in range(rounds):
        begin = time.perf_counter()
        table = pandas.read_csv(path, sep=separator, skiprows=skipped, engine="c")
        seconds = time.perf_counter() - begin
        print(f"{seconds:.4f} {len(table)}", flush=True)
        del table


main()
