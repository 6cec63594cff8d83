#!/usr/bin/env python3
"""The settings that docs/device.md gives for a frame buffer and its touch screen: each tap arrives once, where it was made."""
import unittest

from devicetest import DeviceTest


class Rotation(DeviceTest):
    """Without udev and with it, upright and turned."""

    def tap_settings(self, **options):
        """Each tap on the settings button starts the configuration application once, so it counts the taps."""
        device, operator = self.boot(**options)
        for count in (1, 2):
            operator.tap("toolButton")
            device.wait_for(f"test $(wc -l </tmp/kadconfig-app.log) -ge {count}")
        operator.reach("systemDateForm_Label")  # drags
        operator.tap("systemDateForm_Label")
        operator.find("DateTimeDialog")
        self.assertEqual(device.run("cat /tmp/kadconfig-app.log"), "started\n" * 2)

    def test_turned(self):
        self.tap_settings(rotation=90)

    def test_turned_with_udev(self):
        self.tap_settings(rotation=90, parameters=("udev=1",))

    def test_upright_with_udev(self):
        self.tap_settings(parameters=("udev=1",))

    def test_single_touch_by_libinput(self):
        self.tap_settings(screen="480x272", parameters=("udev=1", "touch=single"),
                          settings={"QT_QPA_GENERIC_PLUGINS": "", "QT_QPA_FB_DISABLE_INPUT": "0"})


if __name__ == "__main__":
    unittest.main(verbosity=2)
