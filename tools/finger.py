#!/usr/bin/env python3
"""The operator's finger: looks through the probe at the widgets of a running panel and touches them on its X display.

    finger.py SOCKET reach WIDGET        drags the panel's rows until the widget is on screen
    finger.py SOCKET tap WIDGET          the same, then taps the middle of the widget
    finger.py SOCKET type WIDGET TEXT    replaces the text of a field
    finger.py SOCKET key KEY...          presses keys
    finger.py SOCKET await WIDGET        waits until the widget is visible
    finger.py SOCKET await WIDGET TEXT   waits until it shows the text

WIDGET is an object name, or =TEXT for the first visible widget that shows the text. Needs DISPLAY and xdotool.
"""
import json
import socket
import subprocess
import sys
import time


class Finger:
    """SOCKET is the probe's local socket; every operation fails with LookupError after PATIENCE seconds."""
    PATIENCE = 15
    PACE = 1.0  # of the finger's movements and rests

    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(path)
        self.replies = self.socket.makefile()

    def widgets(self):
        """Returns a description of each widget that is on screen, windows opened last first."""
        self.socket.sendall(b"\n")
        return [widget for widget in json.loads(self.replies.readline()) if widget["visible"]]

    def find(self, name, text=None):
        """Returns the description of a widget as soon as it is visible and shows the text, if one is given."""
        deadline = time.monotonic() + self.PATIENCE
        while time.monotonic() < deadline:
            for widget in self.widgets():
                shown = widget.get("text", widget.get("currentText"))
                if (shown == name[1:] if name[0] == "=" else widget["name"] == name) and text in (None, shown):
                    return widget
            time.sleep(0.05)
        raise LookupError(f"no widget {name} {text or ''}")

    def reach(self, name):
        """Drags the panel's rows until the middle of the widget is on screen and stands still, and returns it."""
        _, top, width, height = self.find("scrollArea")["rect"]
        upper, lower = top + height // 4, top + height * 3 // 4
        deadline = time.monotonic() + self.PATIENCE
        before = None
        while time.monotonic() < deadline:
            widget = self.find(name)
            x, y = self.middle(widget)
            if not widget["reachable"]:
                self.drag(width // 3, *((lower, upper) if y > upper else (upper, lower)))
            elif (x, y) == before:
                return x, y
            before = x, y
            time.sleep(0.3 / self.PACE)
        raise LookupError(f"{name} cannot be reached")

    def tap(self, name):
        """Presses and releases in the middle of the widget."""
        x, y = self.reach(name)
        self.pointer("mousemove", str(x), str(y), "click", "1")

    def drag(self, x, start, end):
        """Presses, moves up or down by small steps, rests, and releases."""
        words = ["mousemove", str(x), str(start), "mousedown", "1"]
        for step in range(1, 11):
            words += ["mousemove", str(x), str(start + (end - start) * step // 10), "sleep", str(0.03 / self.PACE)]
        self.pointer(*words, "sleep", str(0.3 / self.PACE), "mouseup", "1", "sleep", str(0.2 / self.PACE))

    @staticmethod
    def middle(widget):
        """Returns the middle of a widget in screen pixels."""
        x, y, width, height = widget["rect"]
        return x + width // 2, y + height // 2

    def type(self, name, text):
        """Replaces the text of a field."""
        self.tap(name)
        self.pointer("key", "ctrl+a", "type", "--delay", "30", text)

    def key(self, *keys):
        """Presses keys, named as xdotool names them, after what was tapped last has had time to open."""
        self.pointer("sleep", str(0.3 / self.PACE), "key", *keys)

    @staticmethod
    def pointer(*words):
        """Runs xdotool."""
        subprocess.run(["xdotool", *words], check=True)


def main():
    verbs = {"reach": Finger.reach, "tap": Finger.tap, "type": Finger.type, "key": Finger.key, "await": Finger.find}
    if len(sys.argv) < 4 or sys.argv[2] not in verbs:
        sys.exit(__doc__)
    verbs[sys.argv[2]](Finger(sys.argv[1]), *sys.argv[3:])


if __name__ == "__main__":
    main()
