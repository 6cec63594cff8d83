#!/usr/bin/env python3
"""Boots the emulated device and does what a script asks for, line by line, until its input ends.

    control.py [--screen WIDTHxHEIGHT] [--keyboard] [--rotate 90] [--platform linuxfb|eglfs] [--window | --count]

A question is a line of words with a tabulator after each: "boot", "send LINE", "run COMMAND", "picture FILE", "finger VERB
ARGUMENT...". The answer is a line with status and number of lines, then these lines. With --window the screen is a window
of the user's X display, and the mouse is the finger. With --count the device's clock counts instructions, two nanoseconds
for each, so that a busy machine makes it slow, but no slower than its clock.
"""
import argparse
import subprocess
import sys
import time

from emulator import Device, DeviceFinger, make_image, settings_for

Device.PATIENCE = DeviceFinger.PATIENCE = 300


class Operator:
    """The device and the finger on it."""

    def __init__(self, options):
        image = make_image(*["--eglfs"] * (options.platform == "eglfs"))
        settings, sensor, turn = settings_for(options.platform, options.screen, options.rotate)
        self.viewer = None
        self.counts = options.count
        if options.keyboard:
            settings["QT_IM_MODULE"] = "tarnixui-keypad"
        self.device = Device(image, options.screen, sensor, settings, keyboard=True, window=options.window,
                             icount="shift=1" if options.count else None)
        if options.window:
            self.viewer = subprocess.Popen(["vncviewer", "-Shared", self.device.window], stdout=subprocess.DEVNULL,
                                           stderr=subprocess.DEVNULL)
        self.fingers = DeviceFinger(self.device, turn)

    def boot(self):
        self.device.wait_painted()
        text = f"It has booted and painted after {time.monotonic() - self.device.started:.1f} s"
        if self.counts:
            text += f", {self.device.uptime():.1f} s by its own clock"
        self.device.wait_shown()
        return text

    def send(self, line):
        self.device.send(line)

    def run(self, command):
        status, text = self.device.ask("run " + command)
        if status:
            raise RuntimeError(text)
        return text

    def picture(self, path):
        self.device.picture(path)

    def finger(self, verb, *words):
        getattr(self.fingers, "find" if verb == "await" else verb)(*words)


def serve(operator):
    try:
        for question in sys.stdin:
            verb, *words = question.rstrip("\n").split("\t")[:-1]
            try:
                status, text = 0, getattr(operator, verb)(*words) or ""
            except (RuntimeError, LookupError, TimeoutError) as error:
                status, text = 1, str(error)
            lines = text.splitlines()
            print(f"{status} {len(lines)}", *lines, sep="\n", flush=True)
    finally:
        if operator.viewer:
            operator.viewer.kill()
        operator.device.kill()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--screen", default="800x480")
    parser.add_argument("--platform", default="linuxfb", choices=["linuxfb", "eglfs"])
    parser.add_argument("--rotate", type=int, default=0, choices=[0, 90])
    parser.add_argument("--keyboard", action="store_true")
    parser.add_argument("--window", action="store_true")
    parser.add_argument("--count", action="store_true")
    try:
        serve(Operator(parser.parse_args()))
    except ConnectionError as error:
        sys.exit(f"control.py: {error}")


if __name__ == "__main__":
    main()
