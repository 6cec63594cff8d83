#!/usr/bin/env python3
"""What the screen of the device shows: kernel, frame buffer, Qt and panel together."""
import base64
import subprocess
import unittest

from devicetest import DeviceTest


class Screen(DeviceTest):
    """One device for all of them; each begins with a panel that has just been started."""

    @classmethod
    def setUpClass(cls):
        cls.device, cls.operator = cls().boot(keyboard=True, settings={"QT_IM_MODULE": "tarnixui-keypad"})

    @classmethod
    def tearDownClass(cls):
        cls.device.kill()

    def restart(self, **settings):
        self.device.restart(**settings)
        self.device.send("dQX 500/600", "v3.4.1")
        self.operator.find("=QX 500/600")

    def grab(self, name):
        """Returns what Qt paints for the widget, in the form of pixels()."""
        png = base64.b64decode(self.device.ask("probe grab " + name)[1])
        return subprocess.run(["convert", "png:-", "-depth", "8", "rgb:-"], input=png, check=True, stdout=subprocess.PIPE).stdout

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

    def test_frame_buffer_has_what_qt_paints(self):
        self.restart()
        self.assertEqual(self.settled(self.device), self.grab("MorvaWidget"))

    def test_console_does_not_spoil_it(self):
        self.restart()
        before = self.settled(self.device)
        self.device.run("for console in tty0 tty1 console; do ls -R /etc >/dev/$console; done; "
                        "dmesg -n 8; echo '<0>an emergency' >/dev/kmsg; sleep 0.5")
        self.assertEqual(self.pixels(self.device), before)

    def test_pointer_is_hidden(self):
        mouse = {"QT_QPA_GENERIC_PLUGINS": "evdevmouse:/dev/input/touchscreen:abs,probe:/tmp/probe"}
        for hide, alike in (("1", self.assertEqual), ("0", self.assertNotEqual)):
            self.restart(QT_QPA_FB_HIDECURSOR=hide, **mouse)
            self.operator.touch("0:400,200 60 0:401,201 60 0:up")
            alike(self.settled(self.device), self.grab("MorvaWidget"))

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
        for show, target, effect in (
                (self.show_panel, "=255.255.255.0", lambda: look("NetworkSettingsDialog")),
                (self.show_dialog, "ipAddress_LineEdit", lambda: look("NetworkSettingsDialog")["rect"][1] < 10),
                (self.show_list, "=eth0", lambda: look("interfaceList_comboBox", "eth0")),
                (self.show_keypad, None, lambda: not look("timezone_ComboBox", "Europe/Rome")),
                (self.show_calendar, "=17", lambda: look("qt_spinbox_lineedit")["text"].startswith("17/"))):
            with self.subTest(show.__name__):
                self.restart()
                show()
                device.send("w1")
                overlay = x, y, width, height = self.operator.find("winkHorWidget")["rect"]
                device.wait(lambda: self.pixels(device, overlay) == self.grab("winkHorWidget"), "covered")
                place = self.operator.reach(target) if target else (x + width // 2, y + height - 10)
                self.assertTrue(x < place[0] < x + width and y < place[1] < y + height, place)
                self.operator.tap_at(*place)
                device.wait(effect, "does not reach what is below")
                device.wait(lambda: self.pixels(device, overlay) == self.grab("winkHorWidget"), "covered after a tap")
                device.send("w0")
                device.wait(lambda: not look("winkHorWidget"), "w0")
                below = self.settled(device, overlay)
                device.send("n2")  # paints
                device.run("sleep 2.5")  # the hand would have blinked
                self.assertEqual(self.pixels(device, overlay), below)

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
