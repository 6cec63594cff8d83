#!/usr/bin/env python3
"""Measures the panel and a bare program of the same widgets in turns on the emulated device, by the device's clock, and
prints the ratios of the medians. The clock counts instructions, and all programs and files are in memory, so neither the
host's speed nor its load shows. Run by run.sh:

    run.py [--boots N] [--runs N]
"""
import argparse
import statistics
import sys
from pathlib import Path

sys.path.append(str(Path(__file__).parents[2] / "device"))
from emulator import Device, make_image, settings_for

HOME = "/usr/lib/benchmark"
PROGRAMS = ["src/tarnixUI", "benchmarks/touch/bare-panel"]
# 2 ns for each instruction; while the processor waits, the clock goes on to the next timer at once.
ICOUNT = "shift=1,sleep=off"


def boot(image, program, interfaces=2):
    """Boots a device whose runtime starts the program instead of the installed panel, with the stopwatch on its output."""
    settings, sensor, _ = settings_for("linuxfb", "800x480", 0)
    settings.update(QT_PLUGIN_PATH=f"{HOME}/benchmarks/touch/plugins",
                    QT_QPA_GENERIC_PLUGINS="evdevtouch:/dev/input/touchscreen,stopwatch:1")
    words = [f"panel={HOME}/{program}", "copy=1", f"dummy.numdummies={interfaces}"]
    return Device(image, "800x480", sensor, settings, words, probe=False, cores=1, memory=1024, icount=ICOUNT,
                  options=["-rtc", "base=2026-01-01,clock=vm", "-seed", "1"])


def measure_boot(device):
    """Returns the seconds from power-on to painted and the peak resident memory in KiB. Those seconds do not count in which drivers
    are loaded and the disk is copied into memory, and one command waits in the device: all these follow the host's time."""
    painted, copied, memory = device.run("sleep 10; tail -n 1 /run/plc/output; cat /run/copied; "
                                         "grep VmHWM /proc/$(pidof tarnixUI bare-panel)/status").splitlines()
    begin, end = map(float, copied.split())
    return int(painted.split()[-1]) / 1e9 - (end - begin), int(memory.split()[1])


def measure_touch(device, *options):
    """Prints the touch benchmark's table, measured on the device while the runtime's program stands still."""
    device.run("killall -STOP tarnixUI bare-panel 2>/dev/null; true")
    print(device.run(f"cd /tmp && python3 {HOME}/run.py {HOME} " + " ".join(options)), flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--boots", type=int, default=2)
    parser.add_argument("--runs", type=int, default=3)
    options = parser.parse_args()
    Device.PATIENCE = 1800
    image = make_image("--benchmark")
    starts = [[], []]
    for number in range(options.boots):
        for program, kept in zip(PROGRAMS, starts):
            with boot(image, program) as device:
                kept.append(measure_boot(device))
                if number == options.boots - 1 and program == PROGRAMS[-1]:
                    measure_touch(device, "--runs", str(options.runs))
    for title, digits, *sides in zip(["power-on to painted, s", "peak resident memory, KiB"], [3, 0],
                                     *(map(statistics.median, zip(*kept)) for kept in starts)):
        print("{0:52}{2:10.{1}f}{3:10.{1}f}{4:8.3f}".format(title, digits, *sides, sides[0] / sides[1]), flush=True)
    with boot(image, PROGRAMS[0], interfaces=12) as device:
        measure_boot(device)
        measure_touch(device, "--refresh", "--runs", str(options.runs))


if __name__ == "__main__":
    main()
