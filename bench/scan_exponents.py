#!/usr/bin/env python3
"""Fits the growth exponent of each scaling series from one benchmark run.

    cellformula_bench --benchmark_filter=Scan/ --benchmark_out=scan.json --benchmark_out_format=json
    python3 bench/scan_exponents.py scan.json

The exponent is the least-squares slope of log(CPU time) against log(size):
1 is linear, 2 quadratic.
"""
import json
import sys
from collections import defaultdict

from exponents import exponent


def main(path):
    series = defaultdict(dict)
    for run in json.load(open(path))["benchmarks"]:
        if run.get("run_type") != "iteration":
            continue
        name, _, size = run["name"].rpartition("/")
        if size.isdigit():
            series[name][int(size)] = run["cpu_time"]
    for name, points in sorted(series.items()):
        if len(points) < 2:
            continue
        slope = exponent(points)
        print(f"{name:28} exponent {slope:.2f} over {len(points)} sizes")


if __name__ == "__main__":
    main(sys.argv[1])
