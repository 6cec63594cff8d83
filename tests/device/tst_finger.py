#!/usr/bin/env python3
"""The operator's ten tasks with a finger, through the kernel's input layer."""
import array
import base64
import shlex
import subprocess
import unittest

from devicetest import DeviceTest, document


class Finger(DeviceTest):
    """One test for each kind of screen and touch screen."""

    def play(self, screen, *parameters, **options):
        device, operator = self.boot(screen, keyboard=True, parameters=("dummy.numdummies=12", *parameters), **options)
        device.run("dbus-send --system --print-reply --dest=com.quen.OVIK.Simulator /Simulator "
                   f"com.quen.OVIK.Simulator.SetDocument {shlex.quote('string:' + document())}")
        operator.find("=10.0.0.101")
        operator.play()
        return device, operator

    def test_multitouch_800x480(self):
        """On a frame buffer 16 bits deep, which has what Qt paints. The emulator makes no pictures of it."""
        device, operator = self.play("800x480", display="cirrus-vga")

        def painted():
            png = base64.b64decode(operator.ask("grab MorvaWidget"))
            rgb = subprocess.run(["convert", "png:-", "-depth", "8", "rgb:-"], input=png, check=True, stdout=subprocess.PIPE).stdout
            pixels = zip(rgb[::3], rgb[1::3], rgb[2::3])
            return array.array("H", (red >> 3 << 11 | green >> 2 << 5 | blue >> 3 for red, green, blue in pixels)).tobytes()
        device.wait(lambda: base64.b64decode(device.run("base64 -w0 /dev/fb0")) == painted(), "not painted")

    def test_multitouch_240x320(self):
        self.play("240x320")

    def test_single_touch_480x272(self):
        """Read by libinput: evdevtouch of Debian sees no single-touch screen."""
        self.play("480x272", "touch=single", "udev=1",
                  settings={"QT_QPA_GENERIC_PLUGINS": "", "QT_QPA_FB_DISABLE_INPUT": "0"})


if __name__ == "__main__":
    unittest.main(verbosity=2)
