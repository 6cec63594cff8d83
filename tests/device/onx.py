#!/usr/bin/env python3
"""What the panel and its dialogs look like. As a program, prints it of PANEL on an X display, in front of a simulated device.

    onx.py PANEL
"""
import base64
import hashlib
import json
import os
import subprocess
import sys

sys.path.insert(0, os.path.realpath(os.path.dirname(__file__) + "/../../tools"))
from finger import Finger
from panel import start, wait

# What is tapped, the window that it opens, and what comes last in it.
STATES = ((None, "MorvaWidget", ("=192.168.1.20",)),
          ("=192.168.0.20", "NetworkSettingsDialog", ("gateway_LineEdit", "192.168.0.1")),
          ("systemDateForm_Label", "DateTimeDialog", ("autoUpdate_LineEdit", "192.168.1.1")))
VARYING = "systemDateForm_Label", "systemTimeForm_Label", "currentDate_DateEdit", "qt_spinbox_lineedit", "macId_Label"


def appearances(finger):
    """Yields for each state the window's widgets and a digest of what it paints, without what varies."""
    for opener, window, last in STATES:
        if opener:
            finger.tap(opener)
        finger.find(*last)
        frame = finger.find(window)
        left, top = frame["rect"][:2]
        widgets = [widget for widget in finger.widgets() if widget.get("flags") == frame["flags"]]
        hide = []
        for widget in widgets:
            del widget["minimum"]
            if widget["name"] in VARYING:
                del widget["text"]
                x, y, width, height = widget["rect"]
                hide += ["-draw", f"rectangle {x - left},{y - top} {x - left + width},{y - top + height}"]
        pixels = subprocess.run(["convert", "png:-", *hide, "-depth", "8", "rgb:-"], check=True, stdout=subprocess.PIPE,
                                input=base64.b64decode(finger.ask("grab " + window))).stdout
        yield window, [*widgets, hashlib.sha256(pixels).hexdigest()]
        if opener:
            finger.tap("closeButton")
            wait(lambda window=window: not finger.look(window), f"{window} does not close")


if __name__ == "__main__":
    Finger.PATIENCE = 300
    panel = start(sys.argv[1:], stdout=subprocess.DEVNULL)
    panel.stdin.write(b"dQX 500/600\nv3.4.1\n")
    print(json.dumps(list(appearances(Finger("/tmp/probe")))))
    panel.kill()
