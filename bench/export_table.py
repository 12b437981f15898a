#!/usr/bin/python3
"""Makes with numpy and pandas the table that dataexport_bench makes, of as many records, and prints the seconds."""
import sys
import time

import numpy
import pandas

POINTS = 40
FRACTIONS = 10


def trapezoid_weights(x, low, high):
    """Weights of the points whose product with values is the integral from low to high."""
    weights = numpy.zeros(len(x))
    for i in range(len(x) - 1):
        a, b, width = max(low, x[i]), min(high, x[i + 1]), x[i + 1] - x[i]
        if a < b:
            t0, t1 = (a - x[i]) / width, (b - x[i]) / width
            middle, part = (t0 + t1) / 2, t1 - t0
            weights[i] += (1 - middle) * part * width
            weights[i + 1] += part * middle * width
    return weights


def main():
    records, path = int(sys.argv[1]), sys.argv[2]
    x = numpy.linspace(0, 2, POINTS)
    limits = numpy.linspace(0, 2, FRACTIONS + 1)
    pieces = [(0, 2)] + list(zip(limits[:-1], limits[1:]))
    weights = numpy.array([trapezoid_weights(x, low, high) for low, high in pieces]).T
    random = numpy.random.default_rng(1)
    spectra = [numpy.exp(random.random((records, POINTS)) * 12) for _ in range(2)]
    variances = [0.01 * values * values for values in spectra]
    begin_times = pandas.date_range("2019-05-14", periods=records, freq="10s")

    begin = time.perf_counter()
    columns = {"begin time": begin_times, "end time": begin_times + pandas.Timedelta("10s"), "opmode": "particles"}
    for k, (values, variance) in enumerate(zip(spectra, variances)):
        totals, deviations = values @ weights, numpy.sqrt(variance) @ weights
        for i in range(weights.shape[1]):
            columns[f"{k} {i}"] = totals[:, i]
            columns[f"{k} {i} stddev"] = deviations[:, i]
    pandas.DataFrame(columns).to_csv(path, sep="\t", index=False, float_format="%.6g",
                                     date_format="%Y-%m-%d %H:%M:%S.%f")
    print(f"{time.perf_counter() - begin:.3f}")


main()
