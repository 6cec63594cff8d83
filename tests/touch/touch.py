#!/usr/bin/env python3
"""Plays what an operator does with one finger, on a display of that size; ends at the first task that cannot be done.

    touch.py PANEL WIDTHxHEIGHT [still]

With "still" it plays on a panel that has too few rows to scroll.
"""
import json
import os
import signal
import subprocess
import sys
import time

TOOLS = os.path.realpath(os.path.dirname(__file__) + "/../../tools")
sys.path.insert(0, TOOLS)
from finger import Finger
from panel import start, wait

ADDRESS, NEXT_ADDRESS, LAST_ADDRESS = "10.0.0.101", "10.0.0.100", "10.0.0.110"  # the order is eth1, eth0, eth3, ...


def document():
    """Returns the network configuration of the device that the operator knows."""
    interfaces = [{"name": f"eth{number}", "ip_address": f"10.0.0.{100 + number}", "mac_address": "00:0a:1b:2c:3d:4e"}
                  for number in range(12)]
    return json.dumps({"version": 1, "interfaces": interfaces})


class Operator(Finger):
    """Sees the panel, and knows its device."""
    PACE = 2.0
    SOON = 6  # less than the panel waits before it asks for addresses by itself

    def __init__(self, program):
        subprocess.run(["gdbus", "call", "--system", "--dest", "com.quen.OVIK.Simulator", "--object-path", "/Simulator",
                        "--method", "com.quen.OVIK.Simulator.SetDocument", json.dumps(document())], check=True)
        self.panel = start([program])
        super().__init__("/tmp/probe")

    def send(self, line):
        self.panel.stdin.write(line.encode() + b"\n")

    def tap_twice_while_busy(self, x, y):
        """It finds two taps at once."""
        self.panel.send_signal(signal.SIGSTOP)
        self.pointer("mousemove", str(x), str(y), "click", "--repeat", "2", "1")
        self.panel.send_signal(signal.SIGCONT)

    def rect(self, name):
        return self.find(name)["rect"]

    def tap_at(self, x, y):
        self.pointer("mousemove", str(x), str(y), "click", "1")

    def show_applications(self, count):
        before = self.rect("scrollAreaWidgetContents")
        self.send(f"n{count}")
        wait(lambda: self.rect("scrollAreaWidgetContents") != before, "no rows come or go")

    def drag_by(self, x, y, across, down, rest=0):
        """Drags after a rest, with none before the release: a fling."""
        words = ["mousemove", str(x), str(y), "mousedown", "1", "sleep", str(rest)]
        for step in range(1, 7):
            words += ["mousemove", str(x + across * step // 6), str(y + down * step // 6), "sleep", "0.01"]
        self.pointer(*words, "mouseup", "1")

    def fling_to_end(self, direction):
        def is_there():
            _, top, _, height = self.rect("scrollAreaWidgetContents")
            left, area, width, seen = self.rect("scrollArea")
            if top + height <= area + seen if direction < 0 else top >= area:
                return True
            self.drag_by(left + width // 2, area + seen // 2 - direction * seen // 3, 0, direction * seen * 2 // 3)
            return False
        wait(is_there, "the rows do not scroll to their end")

    def close(self, dialog):
        """Closes the dialog by its button; all of it has to be in sight."""
        _, _, width, height = self.rect("MorvaWidget")
        for name, least in ((dialog, 0), ("applyButton", 40), ("closeButton", 40)):
            left, top, wide, high = self.rect(name)
            assert min(left, top) >= 0 and left + wide <= width and top + high <= height, f"{name} is not all on screen"
            assert high >= least, f"{name} is {high} pixels high, too low for a finger"
        self.tap_at(*self.middle(self.rect("closeButton")))
        wait(lambda: not self.look(dialog), "it does not close")

    def open_interface(self, x, y, interface):
        self.tap_at(x, y)
        self.find("interfaceList_comboBox", interface)
        self.close("NetworkSettingsDialog")

    def choose(self, entry):
        rect = self.locate("=" + entry)
        assert min(rect[2:]) >= self.ENTRY, f"{entry} is too small for a finger: {rect[2]}x{rect[3]}"
        self.tap_at(*self.middle(rect))
        wait(lambda: not self.is_list_open(), "the list does not close")

    def pick(self, box, entry):
        self.open(box)
        self.choose(entry)
        self.find(box, entry)

    def open_by_any_row(self):
        """On a caption, far beside the value, and in the gaps, as far as they are nearer to the row than to another."""
        left, _, width, _ = self.rect("scrollArea")
        gap = 32 if width > 480 else 24
        x, y = self.reach("=" + ADDRESS)
        height = self.rect("=" + ADDRESS)[3]
        for place in ((left + 8, y), (left + width - 40, y), (x, y + height // 2 + gap // 2 - 2)):
            self.open_interface(*place, "eth1")
        x, y = self.reach("=" + NEXT_ADDRESS)
        self.open_interface(x, y - height // 2 - gap // 2 + 2, "eth0")

    def apply(self, shown):
        """The panel shows soon what was applied."""
        self.tap_at(*self.middle(self.rect("applyButton")))
        wait(lambda: any(label["class"] == "QLabel" and label["text"] == shown for label in self.widgets()),
             f"the panel does not show {shown}", self.SOON)

    def change_interface(self):
        x, y = self.reach("=" + ADDRESS)
        self.tap_twice_while_busy(x, y)
        self.find("macId_Label", "0:a:1b:2c:3d:4e")
        dialogs = sum(widget["name"] == "NetworkSettingsDialog" for widget in self.widgets())
        assert dialogs == 1, f"two taps open {dialogs} dialogs"
        self.pick("interfaceList_comboBox", "eth10")
        self.find("ipAddress_LineEdit", LAST_ADDRESS)
        self.type("ipAddress_LineEdit", "10.1.2.3")
        self.apply("10.1.2.3")
        self.drag_by(*self.reach("useDHCP_comboBox"), 0, -60)
        time.sleep(0.3)  # a list would be open by then
        assert not self.is_list_open(), "a drag opens the list"
        self.pick("useDHCP_comboBox", "Yes")
        self.apply("DHCP")
        self.pick("useDHCP_comboBox", "No")
        self.close("NetworkSettingsDialog")

    def drag_zones(self):
        """A drag moves the list and nothing else: the mark stays where it is."""
        zone = self.find("timezone_ComboBox")["currentText"]
        self.open("timezone_ComboBox")
        wait(self.is_list_open, "no list of zones")
        left, top, width, height = self.area()["rect"]
        for across, down, rest in ((width // 3, 0, 0.5), (0, -height // 2, 0)):  # the first marks, and scrolls nothing
            self.drag_by(left + width // 3, top + height * 2 // 3, across, down, rest)
        self.key("Return")  # chooses what is marked
        wait(lambda: not self.is_list_open(), "the list does not close")
        self.find("timezone_ComboBox", zone)

    def choose_zone(self):
        self.pick("timezone_ComboBox", "Europe/Tallinn")
        self.type("timezone_ComboBox", "toky")
        self.choose("Asia/Tokyo")
        self.find("timezone_ComboBox", "Asia/Tokyo")

    def date(self):
        return self.find("currentDate_DateEdit")["text"]

    def set_date(self):
        _, month, year = map(int, self.date()[:10].split("/"))
        self.open("currentDate_DateEdit")
        parts = [self.find(name)["rect"] for name in ("calendarBar", "qt_calendar_calendarview")]
        spans = [(min(rect[i] for rect in parts), max(rect[i] + rect[i + 2] for rect in parts)) for i in (0, 1)]
        filled = sum(width * height for _, _, width, height in parts)
        assert filled == (spans[0][1] - spans[0][0]) * (spans[1][1] - spans[1][0]), \
            f"there is more in the calendar than buttons and days, {parts}"
        self.hold("previousYear", 1.5)
        self.tap("nextMonth")
        self.choose("15")
        wait(lambda: self.date().startswith(f"15/{month % 12 + 1:02}"), "not the 15th of the next month")
        years = year + month // 12 - int(self.date()[6:10])
        assert 2 < years < 10, f"a button held for 1.5 s goes back by {years} years"

    def set_time(self):
        """Taps each part of the time, whose place follows from the width of digits, and steps it."""
        em = 20 if self.rect("MorvaWidget")[2] > 480 else 16
        for part, place in (("Hour", 5.84), ("AM/PM", 8.9), ("Minute", 7.23)):
            before = self.date()
            left, top, _, height = self.locate("currentDate_DateEdit")
            self.tap_at(left + 8 + round(place * em), top + height // 2)
            self.find("stepPart", part)
            self.tap("stepUp")
            wait(lambda: self.date() != before, "no step")
        before = int(self.date()[14:16])
        self.hold("stepUp", 1.5)
        steps = (int(self.date()[14:16]) - before) % 60
        assert steps > 3, f"a button held for 1.5 s makes {steps} steps"

    def switch_update(self):
        left, top, width, height = self.locate("autoUpdate_CheckBox")
        before = self.find("autoUpdate_CheckBox")["checked"]
        self.tap_at(left + width - 3, top + height // 2)
        wait(lambda: self.find("autoUpdate_CheckBox")["checked"] != before, "no switch")

    def play(self):
        self.show_applications(20)
        self.fling_to_end(-1)
        self.fling_to_end(1)
        self.open_interface(*self.reach("=" + ADDRESS), "eth1")
        self.show_applications(1)
        self.open_by_any_row()
        self.change_interface()
        self.fling_to_end(-1)
        self.tap("systemDateForm_Label")
        self.close("DateTimeDialog")
        self.tap("systemTime_Label")
        self.find("ntpStatus_Label", "Last sync:64 secs ago")
        for task in (self.drag_zones, self.choose_zone, self.set_date, self.set_time, self.switch_update, self.switch_update):
            task()
        self.close("DateTimeDialog")

    def play_still(self):
        """Where nothing scrolls any more a drag is no tap, and a tap after it is one."""
        self.show_applications(30)
        self.drag_by(300, 700, 0, -200)
        self.show_applications(1)
        x, y = self.middle(self.rect("=" + ADDRESS))
        for across, down in ((0, 60), (0, -60), (60, 0), (-60, 0)):
            self.drag_by(x, y, across, down)
            time.sleep(0.3)  # a dialog would be open by then
            assert not self.look("NetworkSettingsDialog"), "a drag opens the dialog"
        self.open_interface(x, y, "eth1")


def main():
    program, size, *still = sys.argv[1:]
    if os.environ.get("TOUCH") != "inside":
        build = os.path.dirname(os.path.dirname(program))
        os.environ["TOUCH"] = "inside"
        os.execv(TOOLS + "/sandbox.sh", [
            "sandbox.sh", "--keep", build, "--", TOOLS + "/device.sh", "--interfaces", "2" if still else "12",
            "--screen", size, "--service", build, "--", os.path.realpath(__file__), program, size, *still])
    operator = Operator(program)
    if still:
        operator.play_still()
    else:
        operator.play()
    operator.send("quit")
    sys.exit(operator.panel.wait())


if __name__ == "__main__":
    main()
