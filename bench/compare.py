#!/usr/bin/env python3
"""Pairs our figures with muparser's from one run of cellformula_bench.

    cellformula_bench --benchmark_out=run.json --benchmark_out_format=json
    python3 bench/compare.py run.json

Times are CPU times per item (a formula, a byte or a cell); a ratio above 1
means muparser takes that many times longer than we do.
"""
import json
import sys

# Our benchmark, muparser's benchmark of the same work, and what is compared.
PAIRS = [
    ("Parse/ComparableAll", "MuParser/Parse/ComparableAll", "parse, per formula"),
    ("Parse/Comparable/{i}", "MuParser/Parse/Comparable/{i}", "parse, per formula"),
    ("Parse/LongSum/{n}", "MuParser/Parse/LongSum/{n}", "parse, per formula"),
    ("Parse/Nesting/{n}", "MuParser/Parse/Nesting/{n}", "parse, per formula"),
    ("Evaluate/ComparableAll", "MuParser/Evaluate/ComparableAll", "f64Evaluate, per formula"),
    ("Evaluate/Comparable/{i}", "MuParser/Evaluate/Comparable/{i}", "f64Evaluate, per formula"),
    ("Protocol/ComparableAll", "MuParser/Evaluate/ComparableAll", "host protocol, per formula"),
    ("Protocol/Comparable/{i}", "MuParser/Evaluate/Comparable/{i}", "host protocol, per formula"),
]


def per_item_ns(run):
    scale = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
    items = run.get("items_per_second")
    if items:
        return 1e9 / items
    return run["cpu_time"] * scale


def main(path):
    with open(path) as handle:
        report = json.load(handle)
    runs = {run["name"]: run for run in report["benchmarks"] if run.get("run_type") == "iteration"}
    print(f"{'ours':44} {'ours ns':>12} {'muparser ns':>12} {'ratio':>8}  label")
    for ours_pattern, peer_pattern, what in PAIRS:
        for name in sorted(runs, key=lambda n: (len(n), n)):
            prefix = ours_pattern.split("{")[0]
            if "{" in ours_pattern and not name.startswith(prefix):
                continue
            if "{" not in ours_pattern and name != ours_pattern:
                continue
            suffix = name[len(prefix):] if "{" in ours_pattern else ""
            peer_name = peer_pattern.split("{")[0] + suffix if "{" in peer_pattern else peer_pattern
            if peer_name not in runs:
                continue
            ours = per_item_ns(runs[name])
            peer = per_item_ns(runs[peer_name])
            label = runs[name].get("label", "") or what
            print(f"{name:44} {ours:12.1f} {peer:12.1f} {peer / ours:8.2f}  {label}")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
