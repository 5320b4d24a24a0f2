#!/usr/bin/env python3
"""Fitted exponent of every shape scaling series (Shape/<shape>/<operation>/<n>).

    python3 bench/exponents.py --run build/bench/cellformula_bench [--repeat 3] [--keep out/shapes]
    python3 bench/exponents.py run1.json [run2.json ...]

The exponent is the least-squares slope of log(time) against log(n) over the
points of one series: 1 is linear, 2 quadratic. A second exponent fits only
the points up to 30,000 levels, whose trees and stacks still mostly fit the
processor caches; the Visit series (every node once through a work list, no
recursion) and the Delete series show how much the tree's memory alone bends
a series on the same machine, and the column "over Visit" fits the time of
each series divided by the Visit time of the same tree (1 means the series
grows exactly as reading its tree's memory does). Times are CPU times (the
thread's own CPU time of the delete for the Delete series), which the other
load of a shared machine disturbs less than wall time. With several runs each
figure is the range over the runs. A series whose exponent exceeds the limit
is listed at the end and the exit status is 1.
"""
import argparse
import json
import math
import subprocess
import sys
import tempfile
from collections import defaultdict

LIMIT = 1.1
CACHED_LEVELS = 30000
SCALE_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def series_points(report):
    """{(shape, operation): {n: ns per call}} of one run."""
    points = defaultdict(dict)
    for run in report["benchmarks"]:
        if run.get("run_type") != "iteration" or run.get("error_occurred"):
            continue
        parts = [p for p in run["name"].split("/") if not p.startswith("min_time:") and p != "manual_time"]
        if len(parts) != 4 or parts[0] != "Shape":
            continue
        manual = run["name"].endswith("/manual_time")
        time = run["real_time"] if manual else run["cpu_time"]
        points[(parts[1], parts[2])][int(parts[3])] = time * SCALE_NS[run["time_unit"]]
    return points


def exponent(points):
    xs = [math.log(n) for n in sorted(points)]
    ys = [math.log(points[n]) for n in sorted(points)]
    mean_x, mean_y = sum(xs) / len(xs), sum(ys) / len(ys)
    spread = sum((x - mean_x) ** 2 for x in xs)
    return sum((x - mean_x) * (y - mean_y) for x, y in zip(xs, ys)) / spread


def span(values, fmt):
    low, high = min(values), max(values)
    text = fmt.format(low)
    return text if fmt.format(high) == text else text + ".." + fmt.format(high)


def run_series(binary, repeat, keep):
    reports = []
    for index in range(repeat):
        path = f"{keep}{index + 1}.json" if keep else tempfile.mkstemp(suffix=".json")[1]
        print(f"run {index + 1} of {repeat}: {path}", file=sys.stderr)
        subprocess.run([binary, "--benchmark_filter=^Shape/", f"--benchmark_out={path}",
                        "--benchmark_out_format=json"], check=True, stdout=subprocess.DEVNULL)
        with open(path) as handle:
            reports.append(json.load(handle))
    return reports


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("reports", nargs="*", help="JSON outputs of cellformula_bench")
    parser.add_argument("--run", metavar="BINARY", help="run the series with this cellformula_bench")
    parser.add_argument("--repeat", type=int, default=1, help="runs of the series with --run")
    parser.add_argument("--keep", metavar="PREFIX", help="keep the runs' JSON as PREFIX1.json, PREFIX2.json ...")
    args = parser.parse_args()
    reports = []
    for path in args.reports:
        with open(path) as handle:
            reports.append(json.load(handle))
    if args.run:
        reports += run_series(args.run, args.repeat, args.keep)
    if not reports:
        parser.error("give JSON reports or --run")

    per_run = [series_points(report) for report in reports]
    keys = []
    for points in per_run:
        keys += [key for key in points if key not in keys]
    print(f"{len(reports)} run(s); exponent = slope of log(time) on log(n); ns per level at the first and last n")
    print(f"{'shape':24} {'operation':15} {'n':>14} {'exponent':>11} {'to 30000':>11} {'over Visit':>11} "
          f"{'ns/level first':>16} {'ns/level last':>16}")
    over = []
    over_visit = 0
    for shape, operation in keys:
        runs = [points[(shape, operation)] for points in per_run if len(points.get((shape, operation), {})) >= 2]
        if not runs:
            continue
        exponents = [exponent(points) for points in runs]
        cached = [exponent({n: t for n, t in points.items() if n <= CACHED_LEVELS}) for points in runs]
        first, last = min(runs[0]), max(runs[0])
        first_ns = [points[first] / first for points in runs if first in points]
        last_ns = [points[last] / last for points in runs if last in points]
        relative = []
        for points in per_run:
            series, visit = points.get((shape, operation), {}), points.get((shape, "Visit"), {})
            common = {n: series[n] / visit[n] for n in series if n in visit and visit[n] > 0}
            if len(common) >= 2 and operation != "Visit":
                relative.append(1.0 + exponent(common))
        over_visit += 1 if relative and max(relative) > LIMIT else 0
        flag = "  OVER" if max(exponents) > LIMIT else ""
        print(f"{shape:24} {operation:15} {f'{first}-{last}':>14} {span(exponents, '{:.2f}'):>11} "
              f"{span(cached, '{:.2f}'):>11} {span(relative, '{:.2f}') if relative else '-':>11} "
              f"{span(first_ns, '{:.1f}'):>16} {span(last_ns, '{:.1f}'):>16}{flag}")
        if flag:
            over.append((shape, operation, exponents, runs))
    print(f"\n{len(over)} series above {LIMIT}; {over_visit} above {LIMIT} over the Visit of their tree")
    if over:
        print(f"\nexponent above {LIMIT}:")
        for shape, operation, exponents, runs in over:
            print(f"  {shape} {operation}: exponents {', '.join(f'{e:.2f}' for e in exponents)}")
            for points in runs:
                print("    " + ", ".join(f"n={n}: {points[n] / 1e6:.3f} ms" for n in sorted(points)))
        return 1
    print(f"\nevery exponent is at most {LIMIT}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
