#!/usr/bin/env python3
"""The operator's ten tasks with a finger, through the kernel's input layer."""
import shlex
import unittest

from devicetest import DeviceTest, document


class Finger(DeviceTest):
    """One test for each kind of screen and touch screen."""

    def play(self, screen, touch, **options):
        device, operator = self.boot(screen, keyboard=True, parameters=("dummy.numdummies=12", f"touch={touch}"), **options)
        device.run("dbus-send --system --print-reply --dest=com.quen.OVIK.Simulator /Simulator "
                   f"com.quen.OVIK.Simulator.SetDocument {shlex.quote('string:' + document())}")
        operator.find("=10.0.0.101")
        operator.play()

    def test_multitouch_800x480(self):
        self.play("800x480", "multi")

    def test_multitouch_240x320(self):
        self.play("240x320", "multi")


if __name__ == "__main__":
    unittest.main(verbosity=2)
