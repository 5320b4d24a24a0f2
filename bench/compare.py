#!/usr/bin/env python3
"""Pairs our figures with muparser's from one run of cellformula_bench.

    cellformula_bench --benchmark_out=run.json --benchmark_out_format=json
    python3 bench/compare.py run.json [run2.json ...]

Times are CPU times per item (a formula, a byte or a cell); in the table a
ratio above 1 means muparser takes that many times longer than we do. The
evaluation targets below it give our time over muparser's instead (below 1
means we are faster), for the 16 formulas together and as the geometric mean
of the per-formula ratios, each from one run; with several runs, the table
is printed for the first and the targets give the range over the runs.
"""
import json
import math
import sys

# Our benchmark, muparser's benchmark of the same work, and what is compared.
PAIRS = [
    ("Parse/ComparableAll", "MuParser/Parse/ComparableAll", "parse, per formula"),
    ("Parse/Comparable/{i}", "MuParser/Parse/Comparable/{i}", "parse, per formula"),
    ("Parse/LongSum/{n}", "MuParser/Parse/LongSum/{n}", "parse, per formula"),
    ("Parse/Nesting/{n}", "MuParser/Parse/Nesting/{n}", "parse, per formula"),
    ("Evaluate/ComparableAll", "MuParser/Evaluate/ComparableAll", "f64Evaluate, per formula"),
    ("Evaluate/Comparable/{i}", "MuParser/Evaluate/Comparable/{i}", "f64Evaluate, per formula"),
    ("OneCall/ComparableAll", "MuParser/Evaluate/ComparableAll", "oEvaluateAll, per formula"),
    ("OneCall/Comparable/{i}", "MuParser/Evaluate/Comparable/{i}", "oEvaluateAll, per formula"),
    ("Protocol/ComparableAll", "MuParser/Evaluate/ComparableAll", "host protocol, per formula"),
    ("Protocol/Comparable/{i}", "MuParser/Evaluate/Comparable/{i}", "host protocol, per formula"),
]

# Our evaluation on a tree against muparser's Eval, and the most it may take.
TARGETS = [
    ("Evaluate", "tree f64Evaluate", 1.0),
    ("OneCall", "one-call result (oEvaluateAll)", 1.2),
    ("Protocol", "three-call protocol", 2.5),
]


def per_item_ns(run):
    scale = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
    items = run.get("items_per_second")
    if items:
        return 1e9 / items
    return run["cpu_time"] * scale


def load_runs(path):
    with open(path) as handle:
        report = json.load(handle)
    return {run["name"]: run for run in report["benchmarks"] if run.get("run_type") == "iteration"}


def print_pairs(runs):
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


def target_ratios(runs, ours):
    """Our time over muparser's: the 16 formulas together, and the geometric mean per formula."""
    together = None
    if f"{ours}/ComparableAll" in runs and "MuParser/Evaluate/ComparableAll" in runs:
        together = per_item_ns(runs[f"{ours}/ComparableAll"]) / per_item_ns(runs["MuParser/Evaluate/ComparableAll"])
    logs = []
    for name in runs:
        if name.startswith(f"{ours}/Comparable/"):
            peer = "MuParser/Evaluate/Comparable/" + name.rsplit("/", 1)[1]
            if peer in runs:
                logs.append(math.log(per_item_ns(runs[name]) / per_item_ns(runs[peer])))
    geometric = math.exp(sum(logs) / len(logs)) if logs else None
    return together, geometric


def span(values):
    values = [v for v in values if v is not None]
    if not values:
        return "-"
    low, high = min(values), max(values)
    return f"{low:.2f}" if f"{low:.2f}" == f"{high:.2f}" else f"{low:.2f}..{high:.2f}"


def main(paths):
    all_runs = [load_runs(path) for path in paths]
    print_pairs(all_runs[0])
    print(f"\nevaluation against muparser's Eval, our time / muparser's ({len(paths)} run(s)):")
    print(f"{'what':34} {'16 together':>12} {'geomean':>12} {'target':>8}")
    for ours, what, limit in TARGETS:
        ratios = [target_ratios(runs, ours) for runs in all_runs]
        together = span([r[0] for r in ratios])
        geometric = span([r[1] for r in ratios])
        print(f"{what:34} {together:>12} {geometric:>12} {limit:>7.1f}x")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main(sys.argv[1:])
