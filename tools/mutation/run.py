#!/usr/bin/env python3
"""Mutation run: how many planted faults does the test suite catch?

Exports a revision of the tree into a scratch directory, builds it (release, no benchmarks) and
checks that the suite passes; then, for every fault in mutants.txt, plants it, rebuilds, runs
the suite and restores the file. A fault is caught when some test fails or times out, and
stillborn when the library no longer builds (not counted); a fault whose text the revision no
longer contains (the code moved on) is absent and not counted either. Prints one line per fault
and the score, caught / (planted - stillborn - absent).

    tools/mutation/run.py [--rev HEAD] [--jobs 2] [--out results.txt]

Slow: every fault costs a rebuild and a suite run. Run it niced, in the background.
"""
import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
REPO = os.path.dirname(os.path.dirname(HERE))


def mutants(path):
    for number, line in enumerate(open(path, encoding="utf-8"), 1):
        if line.startswith("#") or not line.strip():
            continue
        parts = [part.strip() for part in line.rstrip("\n").split(" | ")]
        if len(parts) != 3:
            sys.exit(f"{path}:{number}: expected 'file | text | fault'")
        yield parts


def run(command, cwd, timeout):
    try:
        return subprocess.run(command, cwd=cwd, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=timeout).returncode
    except subprocess.TimeoutExpired:
        return -1


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rev", default="HEAD")
    parser.add_argument("--jobs", default="2")
    parser.add_argument("--out")
    args = parser.parse_args()

    work = tempfile.mkdtemp(prefix="krgel-mutation-")
    try:
        archive = subprocess.run(["git", "-C", REPO, "archive", args.rev], check=True, stdout=subprocess.PIPE).stdout
        subprocess.run(["tar", "-x", "-C", work], input=archive, check=True)
        build = os.path.join(work, "build")
        configure = ["cmake", "-S", work, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                     "-DKRGEL_BUILD_BENCH=OFF", "-DKRGEL_WERROR=OFF"]
        make = ["cmake", "--build", build, "-j", args.jobs]
        suite = ["ctest", "--test-dir", build, "-j", args.jobs, "--timeout", "120", "--stop-on-failure"]
        if run(configure, work, 600) or run(make, work, 3600) or run(suite, work, 3600):
            sys.exit("the unmutated tree does not build or pass its suite")

        lines, caught, viable = [], 0, 0
        for relative, text, fault in mutants(os.path.join(HERE, "mutants.txt")):
            path = os.path.join(work, relative)
            original = open(path, encoding="utf-8").read() if os.path.exists(path) else ""
            if original.count(text) > 1:
                sys.exit(f"{relative}: the text of a fault must occur exactly once: {text}")
            if original.count(text) == 0:
                lines.append(f"absent        {relative}: {text}")
                print(lines[-1], flush=True)
                continue
            started = time.time()
            open(path, "w", encoding="utf-8").write(original.replace(text, fault))
            try:
                if run(make, work, 1800) != 0:
                    verdict = "stillborn"
                else:
                    viable += 1
                    verdict = "caught" if run(suite, work, 3600) != 0 else "SURVIVED"
                    caught += verdict == "caught"
            finally:
                open(path, "w", encoding="utf-8").write(original)
            line = f"{verdict:9} {time.time() - started:5.0f}s  {relative}: {text}"
            print(line, flush=True)
            lines.append(line)
        score = f"score: {caught} / {viable} = {100.0 * caught / max(viable, 1):.1f}% ({args.rev})"
        print(score)
        if args.out:
            open(args.out, "w", encoding="utf-8").write("\n".join(lines + [score]) + "\n")
    finally:
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    main()
