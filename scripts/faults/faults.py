#!/usr/bin/env python3
"""Builds the tests with all faults of faults.txt inside, and tells for each of them which test catches it.

The faulty tree is a copy below build/faults, where every fault waits behind a switch that the environment
variable VORTAN_FAULT turns on. First both test programs must pass without a fault.
"""
import argparse, os, pathlib, re, resource, shutil, subprocess, sys, tempfile, time

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
TREE = ROOT / "build/faults/tree"
PROGRAMS = ("vortan_tests", "vortan_shell_tests")
ENTRY = re.compile(r"^fault (\d+) (\S+) (expression|statement)\nbreaks: (.+)\nold: (.+)\nnew: ?(.*)$", re.M)
SLOWER = 10  # than the plain run: a fault that takes longer is taken to hang
# In bytes: no fault shall bring the machine down.
LIMITS = {resource.RLIMIT_AS: 8 << 30, resource.RLIMIT_FSIZE: 4 << 30, resource.RLIMIT_CORE: 0}
SWITCH = """#pragma once
#include <cstdlib>
inline const int faultNow = std::getenv("VORTAN_FAULT") ? std::atoi(std::getenv("VORTAN_FAULT")) : 0;
inline bool FaultOn(int number) { return number == faultNow; }
"""


class Entry:
    def __init__(self, match):
        self.number, self.file, self.kind, self.breaks, self.old, self.new = match.groups()
        paths = list((ROOT / "src").rglob(self.file))
        self.path = paths[0].relative_to(ROOT) if len(paths) == 1 else None
        pattern = r"\s+".join(map(re.escape, self.old.split()))
        self.places = list(re.finditer(pattern, paths[0].read_text())) if self.path else []
        self.problem = f"there are {len(paths)} files {self.file} under src" if not self.path else \
            f"found {len(self.places)} times in {self.path}: {self.old}" if len(self.places) != 1 else ""

    def switched(self):
        on = f"::FaultOn({self.number})"
        if self.kind == "expression":
            return f"({on} ? ({self.new}) : ({self.old}))"
        return f"{{ if ({on}) {{ {self.new} }} else {{ {self.old} }} }}"


def make_tree(entries):
    for old in TREE.glob("*"):
        if old.name != "build":
            shutil.rmtree(old) if old.is_dir() else old.unlink()
    shutil.copytree(ROOT, TREE, ignore=shutil.ignore_patterns(".git", "build", ".cache"), dirs_exist_ok=True)
    (TREE / "src/FaultSwitch.h").write_text(SWITCH)
    for path in {entry.path for entry in entries}:
        text = (ROOT / path).read_text()
        # From the end on, so that places stay where they were found.
        for entry in sorted((e for e in entries if e.path == path), key=lambda e: -e.places[0].start()):
            text = text[:entry.places[0].start()] + entry.switched() + text[entry.places[0].end():]
        (TREE / path).write_text(f'#include "FaultSwitch.h"\n#line 1\n{text}')


def limit():
    for what, most in LIMITS.items():
        resource.setrlimit(what, (most, most))


def run(number, times):
    """Runs both programs side by side. What caught the fault, or none, and how long each of them took."""
    with tempfile.TemporaryDirectory() as scratch:
        os.chmod(scratch, 0o755)  # a test gives up its rights
        environment = {**os.environ, "VORTAN_FAULT": number, "QT_QPA_PLATFORM": "offscreen", "TMPDIR": scratch}
        start, taken, caught, running = time.monotonic(), {}, "", {}
        for name in PROGRAMS:
            with open(f"{scratch}/{name}.log", "w") as log:
                # Not in brief, since only the line that begins a test names one that crashes.
                running[name] = subprocess.Popen(
                    [f"./{name}", "--gtest_fail_fast", "--gtest_color=no"], cwd=TREE / "build/dev/tests", stdout=log,
                    stderr=subprocess.STDOUT, env=environment, preexec_fn=limit)
        while running and not caught:
            time.sleep(0.05)
            for name, process in list(running.items()):
                late = times and time.monotonic() - start > SLOWER * times[name]
                if process.poll() is None and not late:
                    continue
                taken[name] = time.monotonic() - start
                if process.returncode == 0:
                    del running[name]
                    continue
                log = pathlib.Path(f"{scratch}/{name}.log").read_text(errors="replace")
                tests = re.findall(r"^\[  FAILED  \] ([^\s,]+\.[^\s,]+)", log, re.M)[:1] or \
                    re.findall(r"^\[ RUN      \] (\S+)", log, re.M)[-1:] or [f"the start of {name}"]
                how = "" if process.returncode == 1 else " (takes too long)" if late else " (crash)"
                caught = caught or tests[0] + how
        for process in running.values():
            process.kill()  # nothing if it has ended
            process.wait()
        return caught, taken


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--check", action="store_true", help="only see that each old text is found once")
    parser.add_argument("--only", metavar="N,N", help="run these faults alone")
    parser.add_argument("--layer", help="run the faults of this folder of src alone")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="compilers at a time")
    options = parser.parse_args()
    entries = [Entry(match) for match in ENTRY.finditer((HERE / "faults.txt").read_text())]
    placed = [entry for entry in entries if not entry.problem]
    for entry in entries:
        if entry.problem:
            print(f"{entry.number:>3} NOT BUILT IN: {entry.problem}")
    print(f"{len(placed)} of {len(entries)} faults have their place.", flush=True)
    if options.check:
        return 0 if placed == entries else 1
    make_tree(placed)
    for command in (["cmake", "--preset", "dev"],
                    ["cmake", "--build", "build/dev", "-j", str(options.jobs), "--target", *PROGRAMS, "--", "-k0"]):
        if subprocess.run(command, cwd=TREE).returncode != 0:
            return 2
    caught, times = run("0", None)
    if caught:
        print(f"Without a fault, {caught} fails.")
        return 2
    print("Without a fault:", ", ".join(f"{name} {times[name]:.1f} s" for name in PROGRAMS), flush=True)
    wanted = options.only.split(",") if options.only else [entry.number for entry in placed]
    chosen = [e for e in placed if e.number in wanted and options.layer in (None, e.path.parts[1])]
    survivors = 0
    for entry in chosen:
        caught, _ = run(entry.number, times)
        survivors += not caught
        print(f"{entry.number:>3} {caught or f'SURVIVED: {entry.path}: {entry.breaks}'}", flush=True)
    print(f"Caught {len(chosen) - survivors} of {len(chosen)}.")
    return 1 if survivors else 0


if __name__ == "__main__":
    sys.exit(main())
