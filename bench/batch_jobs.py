#!/usr/bin/python3
"""Times the commands of morvantide-batch with one thread and with two, by turns, and what is left of each beside reading.

batch_jobs.py PROGRAM FOLDER [ROUNDS]: FOLDER is one that morvantide-demo has written, with its inverters beside the days."""
import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

SETUP = """quilvane_data_export_version: 1
general: {}
fields:
- {type: variable, variables: [temperature.mean]}
- {type: electrometer, deviations: true, raw_currents: true, voltages: true}
- {type: spectrum, spectra: [%s]}
"""


def spectrum_ids(folder):
    """Of the spectra that the headers of the first day describe."""
    names = sorted(name for name in os.listdir(folder) if name.endswith(".spectra"))
    ids = []
    for name in names[:2]:
        with open(os.path.join(folder, name), encoding="utf-8") as file:
            ids += re.findall(r"hash: (\S+)", "".join(line for line in file if line.startswith("#")))
    return ids


def seconds(command):
    """By the clock, and of the processors."""
    before, begin = os.times(), time.perf_counter()
    ended = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
    if ended.returncode not in (0, 3):
        sys.exit(f"{command}: {ended.stderr.decode()}")
    clock, after = time.perf_counter() - begin, os.times()
    return clock, (after.children_user + after.children_system) - (before.children_user + before.children_system)


def main():
    program, folder = sys.argv[1], sys.argv[2]
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 7
    work = tempfile.mkdtemp(dir=os.path.dirname(os.path.abspath(folder)))
    setup, out = os.path.join(work, "s.exportsetup"), os.path.join(work, "out")
    with open(setup, "w", encoding="utf-8") as file:
        file.write(SETUP % ", ".join(spectrum_ids(folder)))
    commands = {
        "read": ["summary", folder],
        "save": ["save", folder, "--output", out],
        "export": ["export", folder, "--setup", setup, "--output", out + "/table.txt"],
        "reinvert": ["reinvert", folder, "--only-new", "--output", out, "--inverters", os.path.join(folder, "inverters")],
    }
    clocks = {(name, jobs): [] for name in commands for jobs in (1, 2)}
    loads = {key: [] for key in clocks}
    for i in range(rounds):
        for name, words in commands.items():
            for jobs in (1, 2) if i % 2 == 0 else (2, 1):
                shutil.rmtree(out, ignore_errors=True)
                clock, load = seconds([program, words[0], words[1], "--variant", "block", "--jobs", str(jobs)] + words[2:])
                clocks[name, jobs].append(clock)
                loads[name, jobs].append(load)
    shutil.rmtree(work)
    for name in commands:
        one, two = clocks[name, 1], clocks[name, 2]
        ratios = sorted(a / b for a, b in zip(one, two))
        line = (f"{name:9s} {min(one):6.2f} s, by two threads {min(two):6.2f} s: {statistics.median(ratios):.2f} times as fast "
                f"({ratios[0]:.2f} to {ratios[-1]:.2f}); processor time {statistics.median(loads[name, 1]):.2f} s, {statistics.median(loads[name, 2]):.2f} s")
        if name != "read":
            rest = [min(clocks[name, jobs]) - min(clocks["read", jobs]) for jobs in (1, 2)]
            line += f"; beside reading {rest[0]:.2f} s, {rest[1]:.2f} s: {rest[0] / rest[1]:.2f} times"
        print(line)


if __name__ == "__main__":
    main()
