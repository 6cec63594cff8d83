"""What the tests on the emulated device share."""
import os
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
for _folder in ("../../device", "../touch"):
    sys.path.insert(0, os.path.realpath(HERE + "/" + _folder))
from emulator import Device, DeviceFinger, make_image, settings_for  # noqa: E402
from finger import Finger  # noqa: E402
from touch import Operator, document  # noqa: F401

Finger.PATIENCE = Device.PATIENCE = 300


class DeviceOperator(DeviceFinger, Operator):
    """The operator of the touch tests, in front of the emulated device."""
    PACE = 1.0
    SOON = Finger.PATIENCE  # by the device's clock it may be soon

    def send(self, line):
        self.device.send(line)

    def applies(self):
        """Taps Apply, and returns whether a tick shows when the work has ended."""
        seen = [(False, False)]

        def has_ended():
            widgets = {widget["name"]: widget for widget in self.widgets()}
            seen.append(("busyMark" in widgets, widgets["applyButton"]["icon"]))
            return seen[-1][1] or seen[-2][0] and not seen[-1][0]
        self.tap("applyButton")
        self.device.wait(has_ended, "Apply does not end")
        return seen[-1][1]

    def tap_twice_while_busy(self, x, y):
        self.device.run("killall -STOP tarnixUI")
        self.pointer("mousemove", str(x), str(y), "click", "--repeat", "2", "1")
        self.device.run("killall -CONT tarnixUI")


class DeviceTest(unittest.TestCase):
    """Each test has a device of its own, which ends with it."""
    IMAGE = ()

    def start(self, screen="800x480", platform="linuxfb", rotation=0, settings=None, **others):
        """Starts a device, and returns it with its operator. Its time is counted in instructions, two nanoseconds for each,
        so that a busy machine makes it slow, but no slower than its clock."""
        ours, sensor, turn = settings_for(platform, screen, rotation)
        device = Device(make_image(*self.IMAGE), screen, sensor, {**ours, **(settings or {})},
                        icount="shift=1", **others)
        self.addCleanup(device.kill)
        return device, DeviceOperator(device, turn)

    def boot(self, *arguments, **options):
        """Does the same, and waits until its panel has painted."""
        device, operator = self.start(*arguments, **options)
        device.wait_painted()
        self.assertLess(device.uptime(), 20)
        return device, operator

    def pixels(self, device, area=None):
        """Returns the screen's picture, or a part of it, as rows of bytes: red, green, blue."""
        with tempfile.NamedTemporaryFile(suffix=".png") as file:
            device.picture(file.name)
            crop = ["-crop", "{2}x{3}+{0}+{1}".format(*area), "+repage"] if area else []
            return subprocess.run(["convert", file.name, *crop, "-depth", "8", "rgb:-"], check=True, stdout=subprocess.PIPE).stdout
