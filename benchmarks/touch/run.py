#!/usr/bin/env python3
"""Measures what an operator waits for, in turns with a bare program of the same widgets, and prints the ratios of the
medians. Run in the sandbox by run.sh:

    run.py BUILD_DIR [--runs N] [--count] [--emulator PROGRAM] [--refresh]

--refresh   measures only the refresh of all interfaces
--count     counts instructions (in millions) and allocations under callgrind instead, whatever the machine's load and
            speed
--emulator  runs both programs in this emulator
"""
import argparse
import statistics

from stopwatch import Program


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
    if not program.count:
        program.measure_flick(f"frame to frame of a flick, n{count}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--runs", type=int, default=11)
    parser.add_argument("--count", action="store_true")
    parser.add_argument("--emulator")
    parser.add_argument("--refresh", action="store_true")
    options = parser.parse_args()
    programs = ["src/tarnixUI", "benchmarks/touch/bare-panel"]
    results = [{}, {}]
    print(f"{'':52}{'panel':>10}{'bare':>10}{'ratio':>8}", flush=True)

    def run(session, *arguments):
        for _ in range(1 if options.count else options.runs):
            for path, kept in zip(programs, results):
                program = Program(path, options.build, options.count, options.emulator)
                session(program, *arguments)
                program.end()
                for title, figures in program.results.items():
                    kept.setdefault(title, []).extend(figures)

    if options.refresh:
        run(lambda program: program.measure("refresh of all interfaces", "call onNetworkTimerTimedOut -"))
    else:
        run(use_fingers)
        run(fill_rows, 100)
        run(fill_rows, 1001)
    for title in results[0]:
        for unit, ours, theirs in zip(["M instructions", "allocations"] if options.count else ["ms", "processor ms"],
                                      *[map(statistics.median, zip(*kept[title])) for kept in results]):
            print(f"{title + ', ' + unit:52}{ours:10.1f}{theirs:10.1f}{ours / theirs:8.3f}")


if __name__ == "__main__":
    main()
