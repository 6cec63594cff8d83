#!/usr/bin/env python3
"""The operator's finger: looks through the probe at the widgets of a running panel and touches them on its X display.

    finger.py SOCKET reach WIDGET        drags what scrolls until the widget is on screen
    finger.py SOCKET tap WIDGET          the same, then taps the middle of the widget
    finger.py SOCKET open WIDGET         the same, then taps the arrow at its right end
    finger.py SOCKET type WIDGET TEXT    replaces the text of a field, as an on-screen keyboard would
    finger.py SOCKET hold WIDGET SECONDS presses the middle of the widget for that long
    finger.py SOCKET key KEY...          presses keys
    finger.py SOCKET await WIDGET        waits until the widget is visible
    finger.py SOCKET await WIDGET TEXT   waits until it shows the text

WIDGET is an object name, or =TEXT for a visible widget or an entry of the open list that shows the text. Needs DISPLAY
and xdotool.
"""
import json
import socket
import subprocess
import sys
import time


class Finger:
    """SOCKET is the probe's local socket; every operation fails with LookupError after PATIENCE seconds."""
    PATIENCE = 30
    ENTRY = 28  # least height of an entry that a finger can hit, where others cover a part of it
    PACE = 1.0  # of the finger's movements and rests

    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(path)
        self.replies = self.socket.makefile()

    def ask(self, line):
        """Returns the probe's reply to the line."""
        self.socket.sendall(line.encode() + b"\n")
        return self.replies.readline()

    def widgets(self):
        """Returns a description of each widget that is on screen, windows opened last first, and before them of each
        entry of the open list."""
        widgets = [widget for widget in json.loads(self.ask("")) if widget["visible"]]
        entries = [{"name": "", "text": text, "rect": rect, "reachable": rect[3] >= self.ENTRY}
                   for widget in widgets for text, rect in widget.get("entries", {}).items()]
        return entries + widgets

    def look(self, name, text=None):
        """Returns the description of a widget that is visible and shows the text, if one is given; else None."""
        for widget in self.widgets():
            shown = widget.get("text", widget.get("currentText"))
            if (shown == name[1:] if name[0] == "=" else widget["name"] == name) and text in (None, shown):
                return widget
        return None

    def find(self, name, text=None):
        """Waits for what look() returns."""
        deadline = time.monotonic() + self.PATIENCE
        while time.monotonic() < deadline:
            widget = self.look(name, text)
            if widget:
                return widget
            time.sleep(0.05)
        raise LookupError(f"no widget {name} {text or ''}")

    def is_list_open(self):
        return any(widget.get("entries") for widget in self.widgets())

    def area(self):
        """Returns what a finger would drag: the open list, the fields of the dialog or the rows of the panel."""
        widgets = self.widgets()
        for widget in widgets:
            if widget.get("entries"):
                return widget
        areas = {widget["name"]: widget for widget in widgets}
        return areas.get("formArea") or areas["scrollArea"]

    def reach(self, name):
        """Drags until the middle of the widget is on screen and stands still, and returns that point."""
        return self.middle(self.locate(name))

    def locate(self, name):
        """Does what reach() does, and returns the widget's rectangle."""
        deadline = time.monotonic() + self.PATIENCE
        before = seen = None
        forward = True
        while time.monotonic() < deadline:
            widget = self.look(name)
            rect = widget and widget["rect"]
            if widget and widget["reachable"]:
                if rect == before:
                    return rect
            else:
                area = self.area()
                left, top, width, height = area["rect"]
                if rect:
                    forward = rect[1] > top
                elif area.get("entries") == seen:
                    forward = not forward  # the end of the list
                seen = area.get("entries")
                upper, lower = top + height // 6, top + height * 5 // 6
                self.drag(left + width // 3, *((lower, upper) if forward else (upper, lower)))
            before = rect
            time.sleep(0.2 / self.PACE)
        raise LookupError(f"{name} cannot be reached")

    def tap(self, name):
        """Presses and releases in the middle of the widget."""
        x, y = self.reach(name)
        self.pointer("mousemove", str(x), str(y), "click", "1")

    def open(self, name):
        """Taps the arrow of a field that has a list or a calendar."""
        x, y, width, height = self.locate(name)
        self.pointer("mousemove", str(x + width - 20), str(y + height // 2), "click", "1")

    def hold(self, name, seconds):
        """Presses the middle of the widget for a while."""
        x, y = self.reach(name)
        self.pointer("mousemove", str(x), str(y), "mousedown", "1", "sleep", str(seconds), "mouseup", "1")

    def drag(self, x, start, end):
        """Presses, moves up or down by small steps, rests, and releases."""
        words = ["mousemove", str(x), str(start), "mousedown", "1"]
        for step in range(1, 11):
            words += ["mousemove", str(x), str(start + (end - start) * step // 10), "sleep", str(0.02 / self.PACE)]
        self.pointer(*words, "sleep", str(0.2 / self.PACE), "mouseup", "1")

    @staticmethod
    def middle(rect):
        """Returns the middle of a rectangle in screen pixels."""
        x, y, width, height = rect
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
    verbs = {"reach": Finger.reach, "tap": Finger.tap, "open": Finger.open, "type": Finger.type, "hold": Finger.hold,
             "key": Finger.key, "await": Finger.find}
    if len(sys.argv) < 4 or sys.argv[2] not in verbs:
        sys.exit(__doc__)
    verbs[sys.argv[2]](Finger(sys.argv[1]), *sys.argv[3:])


if __name__ == "__main__":
    main()
