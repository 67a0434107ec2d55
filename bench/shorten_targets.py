#!/usr/bin/env python3
"""How short plans get, side by side with the anchor: shorten_targets.py CLI ANCHOR PLANS [--seconds S] [--only TEXT]

CLI is vortan-cli, ANCHOR a bare search over the order that prints its makespan in hours behind "search ", PLANS a folder of
.vta files of one calendar of 8 hours from Monday to Friday. Prints hours of work up to the finish of each plan. With
--best FILE, lines of "NAME HOURS", also the mean of finish / best - 1. Both run one after the other, on one core each.
"""
import argparse
import json
import pathlib
import re
import subprocess

DAY0 = 46391  # Monday 2027-01-04, on which the plans begin


def hours(days):
    day, rest = divmod(days - DAY0, 1)
    weeks, weekday = divmod(int(day), 7)
    clock = rest * 24
    worked = min(max(clock - 8, 0), 4) + min(max(clock - 13, 0), 4)
    return weeks * 40 + min(weekday, 5) * 8 + (worked if weekday < 5 else 0)


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("cli")
    ap.add_argument("anchor")
    ap.add_argument("plans")
    ap.add_argument("--seconds", type=float, default=1)
    ap.add_argument("--seed", type=int, default=1)
    ap.add_argument("--only", default="")
    ap.add_argument("--best")
    a = ap.parse_args()
    best = {}
    if a.best:
        best = {n: float(h) for n, h in (line.split() for line in open(a.best) if line.strip())}
    ours_off, anchor_off = [], []
    print(f"{'plan':24} {'told':>8} {'bound':>8} {'ours':>8} {'anchor':>8} {'best':>8}")
    for path in sorted(pathlib.Path(a.plans).glob("*.vta")):
        if a.only not in path.stem:
            continue
        run = [a.cli, "shorten", path, "--json", "--seconds", str(a.seconds), "--seed", str(a.seed)]
        found = json.loads(subprocess.run(run, capture_output=True, check=True, text=True).stdout)
        out = subprocess.run([a.anchor, path, str(a.seconds), str(a.seed)], capture_output=True, text=True).stdout
        anchor = float(re.search(r"search ([0-9.e+]+)", out).group(1))
        told, ours, bound = (hours(found[k]) for k in ("finishBefore", "finish", "bound"))
        known = best.get(path.stem)
        if known:
            ours_off.append(ours / known - 1)
            anchor_off.append(anchor / known - 1)
        print(f"{path.stem:24} {told:8.1f} {bound:8.1f} {ours:8.1f} {anchor:8.1f} {known or '-':>8}", flush=True)
    if ours_off:
        mean = [100 * sum(x) / len(x) for x in (ours_off, anchor_off)]
        print(f"mean of finish / best - 1 over {len(ours_off)}: ours {mean[0]:.2f} %, anchor {mean[1]:.2f} %")


if __name__ == "__main__":
    main()
