#!/usr/bin/env python3
"""Measures what an operator waits for, in turns with a bare program of the same widgets, and prints the ratios of the
medians. To be run in the sandbox by run.sh:

    run.py BUILD_DIR [--runs N] [--count] [--emulator PROGRAM]

--count     counts instructions (in millions) and allocations under callgrind instead, which the machine's load and
            speed do not change
--emulator  runs both programs in it
"""
import argparse
import os
import re
import socket
import statistics
import subprocess
import time
from pathlib import Path

CALLGRIND = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/tmp/callgrind.%p", "--compress-strings=no"]
PATIENCE = 100  # seconds


class Program:
    """The panel or its peer with the stopwatch loaded. Each measurement is kept in results under its title."""

    def __init__(self, path, options):
        self.count = options.count
        self.results = {}
        self.answers = 0
        self.socket, theirs = socket.socketpair()
        self.socket.settimeout(PATIENCE)
        environment = dict(os.environ, QT_PLUGIN_PATH=f"{options.build}/benchmarks/touch/plugins",
                           QT_QPA_GENERIC_PLUGINS=f"stopwatch:{theirs.fileno()}")
        begin = time.monotonic_ns()
        self.process = subprocess.Popen(
            [*(CALLGRIND if self.count else []), *filter(None, [options.emulator]), f"{options.build}/{path}"],
            env=environment, pass_fds=[theirs.fileno()], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        theirs.close()
        self.keep("exec to first paint", self.answer()[1] - begin)
        self.settle()

    def answer(self):
        self.answers += 1
        return [int(number) for number in self.socket.recv(100).split()]

    def order(self, text):
        self.socket.sendall(text.encode())
        return self.answer()

    def keep(self, title, nanoseconds):
        """Adds (milliseconds,) or (million instructions, allocations) of the last answer to the results."""
        figures = [nanoseconds / 1e6]
        if self.count:
            dump = Path(f"/tmp/callgrind.{self.process.pid}.{self.answers}").read_text()
            calls = re.findall(r"^cfn=(?:malloc|calloc|realloc|posix_memalign|aligned_alloc)\ncalls=(\d+)", dump, re.M)
            figures = [int(re.search(r"^totals: (\d+)", dump, re.M)[1]) / 1e6, sum(map(int, calls))]
        self.results.setdefault(title, []).append(figures)

    def measure(self, title, order):
        begin, end = self.order(order)
        self.keep(title, end - begin)
        self.settle()

    def write(self, lines):
        self.process.stdin.write("".join(f"{line}\n" for line in lines).encode())
        self.process.stdin.flush()

    def measure_lines(self, title, lines, target):
        """Measures from the first byte written to the target painted."""
        self.socket.sendall(f"await - {target}".encode())
        self.settle()
        begin = time.monotonic_ns()
        self.write(lines)
        self.keep(title, self.answer()[1] - begin)
        self.settle()

    def find(self, name):
        while self.order(f"find {name} -")[1] == 0:
            time.sleep(0.1)
        self.settle()

    def measure_drag(self, title):
        self.find("deviceTypeForm_Label")
        self.order("press deviceTypeForm_Label -")
        self.order("move -60 -")
        self.settle()
        for _ in range(10):
            self.measure(title, "move -9 scrollAreaWidgetContents")
        self.order("lift - -")
        self.settle()

    def settle(self):
        """Waits until the program is at rest."""
        before = None
        while before is None or self.processor_time() - before > 2:
            before = self.processor_time()
            time.sleep(0.25)

    def processor_time(self):
        """Returns hundredths of a second."""
        return sum(map(int, Path(f"/proc/{self.process.pid}/stat").read_text().rpartition(")")[2].split()[11:13]))

    def end(self):
        self.process.kill()
        self.process.wait()
        self.socket.close()
        return self.results


def use_fingers(program):
    program.measure_lines("command to label painted", ["dQX500"], "deviceTypeForm_Label=QX500")
    program.measure_lines("wink command to overlay painted", ["w1"], "winkHorWidget")
    program.write(["w0"])
    program.measure_drag("a drag's frame")
    address = "=192.168.0.20"
    program.find(address)
    program.measure("tap to network dialog painted", f"tap {address} NetworkSettingsDialog")
    program.order("tap closeButton -")
    program.find("systemTimeForm_Label")
    program.measure("tap to date dialog painted", "tap systemTimeForm_Label DateTimeDialog")
    program.find("=Europe/Rome")
    program.measure("tap to list of 600 zones painted", "tap timezone_ComboBox@ QAbstractItemView")


def fill_rows(program, count):
    lines = [f"n{count}", *(f"{kind}{row:03}{text} {row}" for row in range(count - 1)
                            for kind, text in (("a", "Application"), ("s", "Running")))]
    program.measure_lines(f"n{count} with all texts to painted", [*lines, "dDONE"], "deviceTypeForm_Label=DONE")
    program.measure_drag(f"a drag's frame, n{count}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--runs", type=int, default=11)
    parser.add_argument("--count", action="store_true")
    parser.add_argument("--emulator")
    options = parser.parse_args()
    programs = ["src/tarnixUI", "benchmarks/touch/bare-panel"]
    results = [{}, {}]
    print(f"{'median of ' + str(options.runs):36}{'panel':>10}{'bare':>10}{'ratio':>8}", flush=True)

    def run(session, *arguments):
        for _ in range(1 if options.count else options.runs):
            for path, kept in zip(programs, results):
                program = Program(path, options)
                session(program, *arguments)
                for title, figures in program.end().items():
                    kept.setdefault(title, []).extend(figures)

    run(use_fingers)
    run(fill_rows, 100)
    run(fill_rows, 1001)
    run(lambda program: program.measure("refresh of 12 interfaces", "call onNetworkTimerTimedOut -"))
    for title in results[0]:
        for unit, ours, theirs in zip(["M instructions", "allocations"] if options.count else ["ms"],
                                      *[map(statistics.median, zip(*kept[title])) for kept in results]):
            print(f"{title + ', ' + unit:52}{ours:10.1f}{theirs:10.1f}{ours / theirs:8.3f}")


if __name__ == "__main__":
    main()
