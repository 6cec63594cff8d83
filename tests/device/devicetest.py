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

Finger.PATIENCE = 120


class DeviceOperator(DeviceFinger, Operator):
    """The operator of the touch tests, in front of the emulated device."""
    PACE = 1.0

    def send(self, line):
        self.device.send(line)

    def tap_twice_while_busy(self, x, y):
        self.device.run("killall -STOP tarnixUI")
        self.pointer("mousemove", str(x), str(y), "click", "--repeat", "2", "1")
        self.device.run("killall -CONT tarnixUI")


class DeviceTest(unittest.TestCase):
    """Each test has a device of its own, which ends with it."""
    IMAGE = ()

    def boot(self, screen="800x480", platform="linuxfb", rotation=0, settings=None, **options):
        """Boots a device, waits until its panel has painted, and returns it with its operator."""
        ours, sensor, turn = settings_for(platform, screen, rotation)
        device = Device(make_image(*self.IMAGE), screen, sensor, {**ours, **(settings or {})}, **options)
        self.addCleanup(device.kill)
        device.wait_painted()
        return device, DeviceOperator(device, turn)

    def pixels(self, device, area=None):
        """Returns the screen's picture, or a part of it, as rows of bytes: red, green, blue."""
        with tempfile.NamedTemporaryFile(suffix=".png") as file:
            device.picture(file.name)
            crop = ["-crop", "{2}x{3}+{0}+{1}".format(*area), "+repage"] if area else []
            return subprocess.run(["convert", file.name, *crop, "-depth", "8", "rgb:-"], check=True, stdout=subprocess.PIPE).stdout

    def settled(self, device, area=None):
        """Returns what pixels() returns twice in a row."""
        seen = [None, self.pixels(device, area)]
        device.wait(lambda: seen.append(self.pixels(device, area)) or seen[-1] == seen[-2], "the screen does not settle")
        return seen[-1]
