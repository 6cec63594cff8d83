#!/usr/bin/env python3
"""What happens to a device in its life, and what stays of it."""
import shutil
import subprocess
import tempfile
import unittest

from devicetest import DeviceTest, make_image

ZONES = "Europe/Rome", "Europe/Riga"
NTP = "server 127.127.1.0\n", "driftfile /var/lib/ntp/ntp.drift\nserver 192.168.1.1 iburst\n"
FILES = {"/etc/timezone": tuple(zone + "\n" for zone in ZONES), "/etc/ntp.conf": NTP}


class Adversity(DeviceTest):
    """The panel goes on, and a tick shows only for what is done."""

    def test_panel_goes_on(self):
        """On a device with 128 MiB of memory and one core, whose disk is mounted for reading only."""
        self.device, self.operator = self.boot(memory=128, cores=1, parameters=("ro",))
        panel = self.device.run("pidof tarnixUI")
        self.apply_in_vain()
        self.assertEqual(self.device.run("cat /etc/timezone /etc/ntp.conf"), ZONES[0] + "\n" + NTP[0])
        self.device.run("mount -o remount,rw /; cat /dev/zero >/full; true")
        self.apply_in_vain()
        self.dead_service()
        self.slow_service()
        self.assertEqual(self.device.run("pidof tarnixUI"), panel)
        self.other_touch_screen()
        self.dead_panel()

    def goes_on(self):
        for text in ("Still there", "There"):
            self.device.send("d" + text)
            self.operator.find("=" + text)

    def apply_in_vain(self):
        self.operator.tap("systemDateForm_Label")
        self.operator.find("timezone_ComboBox", ZONES[0])
        self.operator.pick("timezone_ComboBox", ZONES[1])
        self.operator.tap("autoUpdate_CheckBox")
        self.assertFalse(self.operator.applies())
        self.operator.close("DateTimeDialog")
        self.goes_on()

    def dead_service(self):
        self.operator.find("=192.168.0.20")
        self.device.run("killall ovik-simulator")
        self.goes_on()
        self.device.wait_for("dbus-send --system --print-reply --dest=com.quen.OVIK / org.freedesktop.DBus.Peer.Ping")
        self.operator.open_interface(*self.operator.reach("=192.168.0.20"), "eth1")

    def slow_service(self):
        for world in ("slow string:3000", "well string:"):
            self.device.run("dbus-send --system --print-reply --dest=com.quen.OVIK.Simulator /Simulator "
                            "com.quen.OVIK.Simulator.SetWorld string:" + world)
            self.goes_on()
            self.operator.open_interface(*self.operator.reach("=192.168.0.20"), "eth1")

    def other_touch_screen(self):
        """Qt leaves a touch screen that was given by its path when it is unplugged."""
        self.device.ask("plug 800 480 multi")
        self.goes_on()

    def dead_panel(self):
        """The panel that the runtime starts then takes the other touch screen."""
        self.device.run("rm /run/plc/painted /tmp/probe; killall -9 tarnixUI")
        self.device.wait_painted()
        self.operator.find("=192.168.0.20")
        self.operator.open_interface(*self.operator.reach("=192.168.0.20"), "eth1")


class Power(DeviceTest):
    """It may go at any time."""
    CUTS = 20

    def test_cuts(self):
        """While Apply is at work: both files are whole, old or new. What had been written is there after the next boot."""
        folder = tempfile.TemporaryDirectory(prefix="device-disk-")
        self.addCleanup(folder.cleanup)
        disk, cut, state = (folder.name + name for name in ("/disk", "/cut", "/state"))
        shutil.copy(make_image() + "/disk.img", disk)
        button = self.open_dialog(disk, state)
        duration = self.set_clocks(shutil.copy(disk, folder.name + "/kept"), state)
        seen = []
        for moment in range(self.CUTS):
            subprocess.run(["cp", "--sparse=always", disk, cut], check=True)
            device, operator = self.resume(cut, state)
            operator.tap_at(*button)
            device.run(f"usleep {duration * moment // (self.CUTS - 1)}")
            device.kill()
            seen.append(self.files(cut))
        self.assertGreater(len(set(seen)), 1)  # disk and clock are in step on no host, but some cuts come between two writes
        device, _ = self.boot(disk=folder.name + "/kept")
        self.assertEqual(device.run("cat /etc/timezone; readlink /etc/localtime; cat /etc/ntp.conf"),
                         "Europe/Riga\n/usr/share/zoneinfo/posix/Europe/Riga\n" + NTP[1])

    def open_dialog(self, disk, state):
        """Saves the state of a device whose dialog is ready to be applied, and returns the place of its button."""
        device, operator = self.boot(disk=disk)
        device.run("mount -o remount,commit=1 /")
        operator.tap("systemDateForm_Label")
        operator.find("timezone_ComboBox", ZONES[0])
        operator.tap("autoUpdate_CheckBox")
        operator.pick("timezone_ComboBox", ZONES[1])
        place = operator.reach("applyButton")
        device.run("sync")
        device.control("migrate", uri="exec:cat >" + state)
        device.wait(lambda: device.control("query-migrate")["status"] == "completed", "no state")
        device.kill()
        return place

    def resume(self, disk, state):
        """Returns the device as open_dialog() left it; its disk is slow, so that more moments come between two writes."""
        device, operator = self.start(disk=disk, options=("-incoming", "exec:cat " + state))
        device.run("true")
        device.control("block_set_io_throttle", device="disk", bps=0, bps_rd=0, bps_wr=0, iops=0, iops_rd=0, iops_wr=5)
        return device, operator

    def set_clocks(self, disk, state):
        """Applies, and returns how many microseconds that takes; then sets the clock of the system and the real-time clock."""
        device, operator = self.resume(disk, state)
        began = device.uptime()
        self.assertTrue(operator.applies())
        device.run("sync")
        duration = round((device.uptime() - began) * 1e6)
        operator.tap("autoUpdate_CheckBox")
        operator.set_date()
        date = operator.date()
        self.assertTrue(operator.applies())
        self.assertEqual(device.run("date +%d/%m/%Y").strip(), date[:10])
        clocks = device.run("date +%s; cat /sys/class/rtc/rtc0/since_epoch").split()
        self.assertLess(abs(int(clocks[0]) - int(clocks[1])), 60)
        device.kill()
        return duration

    def files(self, disk):
        """Returns what is in the files, after what the kernel would do with the journal of the disk."""
        self.assertLess(subprocess.run(["e2fsck", "-fp", disk], check=False, stdout=subprocess.DEVNULL).returncode, 2)
        texts = [subprocess.run(["debugfs", "-R", "cat " + path, disk], check=True, capture_output=True, text=True).stdout
                 for path in FILES]
        for text, path in zip(texts, FILES):
            self.assertIn(text, FILES[path], path)
        return tuple(texts)


if __name__ == "__main__":
    unittest.main(verbosity=2)
