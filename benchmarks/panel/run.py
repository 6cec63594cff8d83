#!/usr/bin/env python3
"""Measures the panel beside a bare window of the same toolkit, in turns, and prints the ratios of the medians.

To be run in the sandbox by run.sh: run.py BUILD_DIR [--runs N] [--idle SECONDS]
"""
import argparse
import os
import statistics
import subprocess
import time
from pathlib import Path

LINES = 100000


def start(program, build, milliseconds, opengl="xcb_glx", **streams):
    environment = dict(os.environ, QT_QPA_PLATFORM="xcb", QT_PLUGIN_PATH=f"{build}/benchmarks/panel/plugins",
                       QT_QPA_GENERIC_PLUGINS=f"firstpaint:{milliseconds}", QT_XCB_GL_INTEGRATION=opengl)
    return subprocess.Popen([program], env=environment, stdin=subprocess.PIPE, stderr=subprocess.PIPE,
                            **{"stdout": subprocess.DEVNULL, **streams})


def painted_at(process):
    for line in process.stderr:
        if line.startswith(b"painted "):
            return int(line.split()[1])
    raise RuntimeError("the program ended before it had painted")


def measure_start(program, build, opengl):
    """Returns (milliseconds from exec to first paint, peak resident memory in KiB)."""
    begin = time.monotonic_ns()
    process = start(program, build, 300, opengl)
    elapsed = (painted_at(process) - begin) / 1e6
    process.stderr.read()
    _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0
    return elapsed, usage.ru_maxrss


def processor_time(process):
    return sum(int(file.read_text().split()[0]) for file in Path(f"/proc/{process.pid}/task").glob("*/schedstat")) / 1e6


def measure_idle(programs, build, seconds):
    """Returns the processor time per idle minute in milliseconds, of each program; they idle side by side."""
    processes = [start(program, build, 0) for program in programs]
    for process in processes:
        painted_at(process)
    time.sleep(2)
    begin = [processor_time(process) for process in processes]
    time.sleep(seconds)
    used = [(processor_time(process) - first) * 60 / seconds for process, first in zip(processes, begin)]
    for process in processes:
        process.kill()
        process.wait()
    return used


def measure_burst(program, build):
    """Returns the seconds from the first byte of a burst of commands to the farewell that follows the last."""
    process = start(program, build, 0, stdout=subprocess.PIPE)
    painted_at(process)
    time.sleep(0.5)
    burst = b"".join(b"s000State %d\n" % number for number in range(LINES)) + b"quit\n"
    begin = time.monotonic()
    process.stdin.write(burst)
    process.stdin.flush()
    process.stdout.read()
    elapsed = time.monotonic() - begin
    process.wait()
    return elapsed


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--runs", type=int, default=31)
    parser.add_argument("--idle", type=float, default=60)
    options = parser.parse_args()
    panel, bare = f"{options.build}/src/tarnixUI", f"{options.build}/benchmarks/panel/bare-window"
    reader = subprocess.Popen(["sh", "-c", "mkfifo /tmp/tarnixUI; while :; do cat /tmp/tarnixUI; done"],
                              stdout=subprocess.DEVNULL)

    # The panel does without OpenGL, which Qt loads for a bare window by default.
    peers = [(panel, "xcb_glx"), (bare, "xcb_glx"), (bare, "none")]
    starts = [[measure_start(program, options.build, opengl) for program, opengl in peers] for _ in range(options.runs)]
    print(f"{'':34}{'panel':>10}{'bare':>10}{'ratio':>8}{'no OpenGL':>11}{'ratio':>8}")
    for index, title in enumerate(["exec to first paint, ms", "peak memory, KiB"]):
        ours, theirs, plain = (statistics.median(run[side][index] for run in starts) for side in range(3))
        print(f"{title:34}{ours:10.1f}{theirs:10.1f}{ours / theirs:8.3f}{plain:11.1f}{ours / plain:8.3f}")
    ours, theirs = measure_idle([panel, bare], options.build, options.idle)
    print(f"{'processor time per idle minute, ms':34}{ours:10.1f}{theirs:10.1f}{ours / theirs:8.3f}")
    burst = statistics.median(measure_burst(panel, options.build) for _ in range(5))
    print(f"{LINES} command lines in one write: {burst:.3f} s, {LINES / burst:.0f} lines per second")
    reader.kill()


if __name__ == "__main__":
    main()
