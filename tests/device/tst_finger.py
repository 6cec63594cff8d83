#!/usr/bin/env python3
"""The operator's ten tasks with a finger, through the kernel's input layer."""
import shlex
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

    def test_multitouch_800x480(self):
        self.play("800x480")

    def test_multitouch_240x320(self):
        self.play("240x320")

    def test_single_touch_480x272(self):
        """Read by libinput: evdevtouch of Debian sees no single-touch screen."""
        self.play("480x272", "touch=single", "udev=1",
                  settings={"QT_QPA_GENERIC_PLUGINS": "", "QT_QPA_FB_DISABLE_INPUT": "0"})


if __name__ == "__main__":
    unittest.main(verbosity=2)
