#!/usr/bin/python3
"""A minimal PLC runtime: starts the panel, fills its rows, and starts it again should it die.

    runtime.py [--patience SECONDS] [PANEL]

PANEL is the program, /usr/bin/tarnixUI by default. What comes on standard input goes to the panel as it is. SIGTERM and
Ctrl-C end the panel and the runtime. The panel's log goes to standard error.
"""
import argparse
import os
import select
import signal
import subprocess
import sys
import time

NOTICE_PIPE = "/tmp/tarnixUI"
GREETING = b"First message\n> "
NOTICE = b"paintEvent finished"
APPLICATIONS = (("Mixer", "Running"), ("Förderband", "Stop"))


class PanelError(Exception):
    """The panel did not start."""


class Panel:
    """A running panel that has painted its window."""

    def __init__(self, program, patience):
        self.begin = time.monotonic()
        self.deadline = self.begin + patience
        if not os.path.exists(NOTICE_PIPE):
            os.mkfifo(NOTICE_PIPE)
        # Opened before the panel starts, without waiting for it: the notice cannot be missed.
        notice = os.open(NOTICE_PIPE, os.O_RDONLY | os.O_NONBLOCK)
        self.process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0)
        try:
            self.expect(self.process.stdout.fileno(), GREETING, "greets")
            self.expect(notice, NOTICE, "has painted")
        except (PanelError, KeyboardInterrupt):
            self.process.kill()
            self.process.wait()
            raise
        finally:
            os.close(notice)

    def expect(self, descriptor, text, what):
        """Waits until the panel has written the text, however many pieces it comes in."""
        received = b""
        while received != text:
            if select.select([descriptor], [], [], 1)[0]:
                received += os.read(descriptor, len(text) - len(received))
            if self.process.poll() is not None:
                raise PanelError(f"it ended with status {self.process.returncode}")
            if time.monotonic() > self.deadline:
                raise PanelError(f"it did not write {text}")
        print(f"the panel {what} after {time.monotonic() - self.begin:.1f} s", flush=True)

    def send(self, *lines):
        """Sends commands; a newline within a text would end the command."""
        self.process.stdin.write("".join(line.replace("\n", " ") + "\n" for line in lines).encode())

    def fill(self, applications):
        """Replaces the placeholders TargVer, PLCStatus and AppName. The device's name comes before any wink."""
        extra = len(applications) - 1
        self.send("d500/600", "v3.5.19", f"n{extra + 2 if extra else 1}")  # the first extra row stays empty
        for index, (name, status) in enumerate(applications):
            self.send(f"a{index:03}{name}", f"s{index:03}{status}")

    def serve(self):
        """Passes on standard input until the panel dies."""
        output, commands = self.process.stdout.fileno(), sys.stdin.fileno()
        watched = [output, commands]
        while True:
            ready = select.select(watched, [], [])[0]
            if output in ready:  # it writes nothing while it lives
                return
            piece = os.read(commands, 65536)
            self.process.stdin.write(piece)
            if not piece:
                watched = [output]

    def end(self):
        """Returns the panel's status; one that waits for the platform service ends after that."""
        self.send("quit")
        print("the panel says", self.process.stdout.read().decode().strip(), flush=True)
        return self.process.wait()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--patience", type=float, default=300, metavar="SECONDS", help="for a panel that starts")
    parser.add_argument("panel", nargs="?", default="/usr/bin/tarnixUI")
    arguments = parser.parse_args()
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # raises KeyboardInterrupt, too
    while True:
        try:
            panel = Panel(arguments.panel, arguments.patience)
            try:
                panel.fill(APPLICATIONS)
                panel.serve()
            except KeyboardInterrupt:
                sys.exit(panel.end())
            print(f"the panel died with status {panel.process.wait()}", flush=True)
        except (PanelError, BrokenPipeError) as problem:
            print(f"the panel failed: {problem}", flush=True)
        time.sleep(1)


if __name__ == "__main__":
    main()
