#!/usr/bin/env python3
"""The settings that docs/device.md gives for a frame buffer and its touch screen: each tap arrives once, where it was made."""
import unittest

from devicetest import DeviceOperator, DeviceTest, settings_for

FILE = "evdevtouch:/dev/input/touchscreen"


class Rotation(DeviceTest):
    """Without udev and with it, upright and turned, by evdevtouch and by libinput, plugged before the start and after it."""

    def test_each_tap_arrives_once(self):
        self.device, _ = self.boot(rotation=90)
        self.tap_settings(90)
        self.device.run("/usr/lib/systemd/systemd-udevd --daemon && udevadm trigger && udevadm settle")
        self.tap_settings(90, "480 800 multi", FILE + ":rotate=90")
        self.tap_settings(0, "800 480 multi", FILE)
        self.tap_settings(0, "800 480 multi", "evdevtouch", plug_again=True)
        self.tap_settings(0, "800 480 single", "", QT_QPA_FB_DISABLE_INPUT="0", plug_again=True)

    def tap_settings(self, rotation, screen=None, plugins=None, plug_again=False, **settings):
        """Each tap on the settings button starts the configuration application once, so it counts the taps."""
        device, operator = self.device, DeviceOperator(self.device, settings_for("linuxfb", "800x480", rotation)[2])
        with self.subTest(plugins, rotation=rotation, udev=screen is not None):
            if screen:
                device.ask("plug " + screen)
                device.restart(QT_QPA_GENERIC_PLUGINS=",".join(filter(None, (plugins, "probe:/tmp/probe"))), **settings)
            if plug_again:
                device.ask("plug " + screen)
                device.run("udevadm settle")
            device.run("rm -f /tmp/kadconfig-app.log")
            for count in (1, 2):
                operator.tap("toolButton")
                device.wait_for(f"test $(wc -l </tmp/kadconfig-app.log) -ge {count}")
            operator.reach("systemDateForm_Label")  # drags
            operator.tap("systemDateForm_Label")
            operator.find("DateTimeDialog")
            self.assertEqual(device.run("cat /tmp/kadconfig-app.log"), "started\n" * 2)


if __name__ == "__main__":
    unittest.main(verbosity=2)
