#!/usr/bin/env python3
"""What the screen of the device shows: kernel, frame buffer, Qt and panel together."""
import base64
import json
import os
import subprocess
import unittest

from devicetest import HERE, DeviceTest
from onx import appearances

TOOLS, BUILD = (os.path.realpath(f"{HERE}/../../{folder}") for folder in ("tools", "build/aarch64"))


class OnScreen(DeviceTest):
    """One device for all tests of a class; each begins with a panel that has just been started."""
    PLATFORM = "linuxfb"

    @classmethod
    def setUpClass(cls):
        cls.device, cls.operator = cls().boot(platform=cls.PLATFORM, keyboard=True, settings={"QT_IM_MODULE": "tarnixui-keypad"})

    @classmethod
    def tearDownClass(cls):
        cls.device.kill()

    def restart(self, **settings):
        self.device.restart(**settings)
        self.device.send("dQX 500/600", "v3.4.1")
        self.operator.find("=QX 500/600")

    def is_seen(self, name, area=(0, 0, 800, 480)):
        """Returns whether the area of the screen shows what Qt paints for the widget."""
        png = base64.b64decode(self.operator.ask("grab " + name))
        left, top = self.operator.find(name)["rect"][:2]
        crop = ["-crop", f"{area[2]}x{area[3]}+{area[0] - left}+{area[1] - top}", "+repage"]
        return self.pixels(self.device, area) == subprocess.run(["convert", "png:-", *crop, "-depth", "8", "rgb:-"], input=png,
                                                                check=True, stdout=subprocess.PIPE).stdout


class Overlay(OnScreen):
    """The overlay above what a finger opens."""
    STATES = 5

    @staticmethod
    def common(one, other):
        left, top = max(one[0], other[0]), max(one[1], other[1])
        return left, top, min(one[0] + one[2], other[0] + other[2]) - left, min(one[1] + one[3], other[1] + other[3]) - top

    def show_panel(self):
        pass

    def show_dialog(self):
        self.operator.tap("=192.168.0.20")
        self.operator.find("NetworkSettingsDialog")

    def show_list(self):
        self.show_dialog()
        self.operator.open("interfaceList_comboBox")
        self.operator.find("=eth1")

    def show_keypad(self):
        self.operator.tap("systemDateForm_Label")
        self.operator.find("timezone_ComboBox", "Europe/Rome")
        self.operator.tap("timezone_ComboBox")
        self.device.wait(lambda: self.operator.look("DateTimeDialog")["rect"][1] < 10, "makes no room for the keypad")

    def show_calendar(self):
        self.operator.tap("systemDateForm_Label")
        self.operator.open("currentDate_DateEdit")
        self.operator.find("nextMonth")

    def test_overlay_lies_above_all_lets_taps_through_and_goes_for_good(self):
        device, look = self.device, self.operator.look
        self.restart()
        for show, target, effect, dialog in [
                (self.show_panel, "=255.255.255.0", lambda: look("NetworkSettingsDialog"), "NetworkSettingsDialog"),
                (self.show_dialog, "ipAddress_LineEdit", lambda: look("NetworkSettingsDialog")["rect"][1] < 10,
                 "NetworkSettingsDialog"),
                (self.show_list, "=eth0", lambda: look("interfaceList_comboBox", "eth0"), "NetworkSettingsDialog"),
                (self.show_calendar, "=17", lambda: look("qt_spinbox_lineedit")["text"].startswith("17/"), "DateTimeDialog"),
                (self.show_keypad, None, lambda: not look("timezone_ComboBox", "Europe/Rome"), "DateTimeDialog")][:self.STATES]:
            with self.subTest(show.__name__):
                show()
                device.send("w1")
                x, y, width, height = self.operator.find("winkHorWidget")["rect"]
                still = self.operator.find("=WINK Command Active")["rect"][0]  # beside the hand, which blinks
                still = still, y, x + width - still, height
                device.wait(lambda: self.is_seen("winkHorWidget", still), "covered")
                place = self.operator.reach(target) if target else (x + width // 2, y + height - 10)
                self.assertTrue(x < place[0] < x + width and y < place[1] < y + height, place)
                self.operator.tap_at(*place)
                device.wait(effect, "does not reach what is below")
                device.send("w1")  # for another minute
                device.wait(lambda: self.is_seen("winkHorWidget", still), "covered after a tap")
                device.send("w0")
                below = "choices" if look("choices") else dialog
                covered = self.common((x, y, width, height), self.operator.find(below)["rect"])
                device.wait(lambda: self.is_seen(below, covered), "w0")
                device.send("n2")  # paints
                device.run("sleep 2.5")  # the hand would have blinked
                self.assertTrue(any(self.is_seen(below, covered) for _ in range(4)))  # a cursor may blink there
                device.send("n1")
                if show != self.show_keypad:  # whose choices cover the button
                    self.operator.close(dialog)


class OverlayOnEglfs(Overlay):
    """Above panel, dialog and list, drawn by Mesa's software driver, which takes its time."""
    IMAGE = ("--eglfs",)
    STATES = 3
    PLATFORM = "eglfs"


class Screen(OnScreen):
    """What the frame buffer has, and what reaches the panel."""

    def test_tells_the_runtime(self):
        device = self.device
        self.assertEqual(device.run("cat /run/plc/painted"), "paintEvent finished")
        self.assertEqual(device.run("cat /run/plc/output"), "First message\n> ")

    def test_bus_lets_only_the_panel_call(self):
        call = ("dbus-send --system --print-reply --dest=com.quen.OVIK /NetworkManager "
                "com.quen.OVIK.NetworkManager.getInterfaceConfig string:eth0")
        self.assertIn("192.168", self.device.run(call))
        self.assertIn("Rejected", self.device.ask(f"run su -s /bin/sh messagebus -c '{call}'")[1])
        self.assertIn("ovik", self.device.run("ps | grep [o]vik-simulator"))

    def test_frame_buffer_has_what_qt_paints_as_on_x(self):
        """Each widget's place and text, each pixel, except for the clock and the hardware address."""
        subprocess.run(["cmake", "--build", BUILD, "--target", "tarnixUI", "emulation"], check=True, stdout=subprocess.DEVNULL)
        on_x = subprocess.run([
            TOOLS + "/sandbox.sh", "--", TOOLS + "/device.sh", "--screen", "800x480", "--service", BUILD, "--",
            HERE + "/onx.py", BUILD + "/launchers/tarnixUI"], check=True, stdout=subprocess.PIPE).stdout
        self.restart()
        for (window, seen), expected in zip(appearances(self.operator), json.loads(on_x)):
            self.assertEqual([window, seen], expected)
            self.device.wait(lambda window=window: self.is_seen(window, self.operator.rect(window)), window)

    def test_console_does_not_spoil_it(self):
        self.restart()
        self.device.wait(lambda: self.is_seen("MorvaWidget"), "not painted")
        self.device.run("for console in tty0 tty1 console; do ls -R /etc >/dev/$console; done; "
                        "dmesg -n 8; echo '<0>an emergency' >/dev/kmsg; sleep 0.5")
        self.device.wait(lambda: self.is_seen("MorvaWidget"), "the console spoils it")  # the clock may tick meanwhile

    def test_pointer_is_hidden(self):
        mouse = {"QT_QPA_GENERIC_PLUGINS": "evdevmouse:/dev/input/touchscreen:abs,probe:/tmp/probe"}
        for hide in ("1", "0"):
            self.restart(QT_QPA_FB_HIDECURSOR=hide, **mouse)
            self.operator.touch("0:400,200 60 0:401,201 60 0:up")
            self.device.run("sleep 1")
            self.device.wait(lambda hide=hide: self.is_seen("MorvaWidget") == (hide == "1"), "pointer, hidden: " + hide)

    def test_second_finger_does_no_harm(self):
        self.restart()
        x, y = self.operator.reach("=192.168.0.20")
        self.operator.touch(f"0:{x},{y} 40 1:100,300 40 1:150,250 40 1:up 40 0:up 300 1:700,200 30 0:{x},{y} 40 1:up 0:up")
        self.assertTrue(self.device.succeeds("pidof tarnixUI"))
        if self.operator.look("NetworkSettingsDialog"):  # whatever the two did, one finger goes on
            self.operator.close("NetworkSettingsDialog")
        self.operator.open_interface(x, y, "eth1")


if __name__ == "__main__":
    unittest.main(verbosity=2)
