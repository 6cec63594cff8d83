#!/usr/bin/env python3
"""Measures the panel, a minimal program with the same widgets, fonts and bus calls, and a bare window of the same
toolkit in turns, and prints the ratios of the medians.

To be run in the sandbox by run.sh: run.py BUILD_DIR [--runs N] [--idle SECONDS] [--display NAME]
"""
import argparse
import os
import statistics
import subprocess
import sys
import time
from pathlib import Path

sys.path.append(str(Path(__file__).parents[1] / "touch"))
from stopwatch import Program

LINES = 100000
PLATFORMS = {"offscreen": "offscreen", "vnc": "vnc:size=800x480", "x11": "xcb", "openbox": "xcb", "matchbox": "xcb",
             "weston-desktop": "wayland", "weston-kiosk": "wayland", "cage": "wayland"}


def measure_start(path, build):
    """Returns (milliseconds from exec to first paint, peak resident memory in KiB)."""
    program = Program(path, build)
    return program.results["exec to first paint"][0][0], program.end()


def measure_idle(paths, build, seconds):
    """Returns the processor time per idle minute in milliseconds, of each program; they idle side by side."""
    programs = [Program(path, build) for path in paths]
    begin = [program.processor_time() for program in programs]
    time.sleep(seconds)
    used = [(program.processor_time() - first) * 60 / seconds for program, first in zip(programs, begin)]
    for program in programs:
        program.end()
    return used


def measure_burst(path, build):
    """Returns the seconds from the first byte of a burst of commands to the farewell that follows the last."""
    program = Program(path, build, stdout=subprocess.PIPE)
    lines = [f"s000State {number}" for number in range(LINES)] + ["quit"]
    begin = time.monotonic()
    program.write(lines)
    program.process.stdout.read()
    elapsed = time.monotonic() - begin
    program.process.wait()
    return elapsed


def open_session(display):
    """Starts what stands between the panel and the X display, for the programs that are started from now on."""
    os.environ.update(QT_QPA_PLATFORM=PLATFORMS[display], WAYLAND_DISPLAY="wayland-0")
    if display in ("offscreen", "vnc"):  # without a viewer
        return
    session = subprocess.Popen(["tools/session.sh", display], stdout=subprocess.PIPE)
    if session.stdout.readline() != b"ready\n":
        sys.exit(f"{display} does not start")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--runs", type=int, default=31)
    parser.add_argument("--idle", type=float, default=60)
    parser.add_argument("--display", choices=PLATFORMS)
    options = parser.parse_args()
    if options.display:
        open_session(options.display)
    panel, window = "src/tarnixUI", "benchmarks/panel/bare-window"
    reader = subprocess.Popen(["sh", "-c", "mkfifo /tmp/tarnixUI; while :; do cat /tmp/tarnixUI; done"],
                              stdout=subprocess.DEVNULL)

    peers = [panel, "benchmarks/touch/bare-panel", window]
    starts = [[measure_start(path, options.build) for path in peers] for _ in range(options.runs)]
    print(f"{options.display or '':34}{'panel':>10}{'bare panel':>12}{'ratio':>8}{'bare window':>13}{'ratio':>8}")
    for index, title in enumerate(["exec to first paint, ms", "peak memory, KiB"]):
        ours, bare, plain = (statistics.median(run[side][index] for run in starts) for side in range(3))
        print(f"{title:34}{ours:10.1f}{bare:12.1f}{ours / bare:8.3f}{plain:13.1f}{ours / plain:8.3f}")
    if not options.display:
        measure_work([panel, window], options)
    reader.kill()


def measure_work(peers, options):
    """Prints what panel and bare window use while they idle, and how fast the panel takes commands."""
    ours, theirs = measure_idle(peers, options.build, options.idle)
    print(f"{'processor time per idle minute, ms':34}{ours:10.1f}{'':20}{theirs:13.1f}{ours / theirs:8.3f}")
    burst = statistics.median(measure_burst(peers[0], options.build) for _ in range(5))
    print(f"{LINES} command lines in one write: {burst:.3f} s, {LINES / burst:.0f} lines per second")


if __name__ == "__main__":
    main()
