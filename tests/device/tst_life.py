#!/usr/bin/env python3
"""What happens to a device in its life, and what stays of it."""
import shutil
import subprocess
import tempfile
import unittest

from devicetest import DeviceTest, make_image

ZONES = "Europe/Rome", "Europe/Riga"
NTP = "driftfile /var/lib/ntp/ntp.drift\nserver 192.168.1.1 iburst\n", "server 127.127.1.0\n"


class Life(DeviceTest):
    """Each with a device of its own."""

    def disk(self):
        """Returns a copy of the image's disk, which keeps what is written."""
        folder = tempfile.TemporaryDirectory(prefix="device-disk-")
        self.addCleanup(folder.cleanup)
        return shutil.copy(make_image() + "/disk.img", folder.name)

    def choose(self, operator, zone):
        operator.pick("timezone_ComboBox", zone)
        operator.tap("applyButton")

    def test_clocks_and_files(self):
        """The dialog sets the clock of the system and the real-time clock; zone and NTP files are there after a reboot."""
        disk = self.disk()
        device, operator = self.boot(disk=disk)
        operator.tap("systemDateForm_Label")
        operator.find("timezone_ComboBox", ZONES[0])
        self.choose(operator, "Europe/Riga")
        device.wait_for("grep -q Riga /etc/timezone")
        operator.set_date()
        date = operator.date()
        operator.tap("applyButton")
        device.wait_for(f"date +%d/%m/%Y | grep -q {date[:10]}")
        device.wait_for(f"hwclock -u | grep -q ' {int(date[:2])} .*{date[6:10]}'")
        self.assertEqual(device.run("TZ=UTC date +%H:%M")[:4], device.run("TZ=UTC hwclock -u")[11:15])
        operator.tap("autoUpdate_CheckBox")
        operator.tap("applyButton")
        device.wait_for("grep -q iburst /etc/ntp.conf")
        device.run("sync; umount -a -r; true")
        device.kill()
        device, operator = self.boot(disk=disk)
        self.assertEqual(device.run("cat /etc/timezone; readlink /etc/localtime; cat /etc/ntp.conf"),
                         "Europe/Riga\n/usr/share/zoneinfo/posix/Europe/Riga\n" + NTP[0])

    def test_power_cuts(self):
        """The power is cut at twenty moments while settings are applied: both files are whole, old or new, and it boots."""
        disk = self.disk()
        device, operator = self.boot(disk=disk)
        device.run("mount -o remount,commit=1 /")
        operator.tap("systemDateForm_Label")
        operator.find("timezone_ComboBox", ZONES[0])
        operator.tap("autoUpdate_CheckBox")
        cut = disk + ".cut"
        for moment in range(20):
            if moment % 4 == 0:
                self.choose(operator, ZONES[(moment // 4 + 1) % 2])
            device.control("stop")
            shutil.copy(disk, cut)  # as it is when the power goes now
            device.control("cont")
            subprocess.run(["e2fsck", "-fp", cut], check=False, stdout=subprocess.DEVNULL)  # replays the journal
            for path, whole in (("/etc/timezone", [zone + "\n" for zone in ZONES]), ("/etc/ntp.conf", NTP)):
                text = subprocess.run(["debugfs", "-R", "cat " + path, cut], check=True, capture_output=True, text=True).stdout
                self.assertIn(text, whole, (moment, path))
        device.kill()
        device, _ = self.boot(disk=cut)
        self.assertIn(device.run("cat /etc/timezone").strip(), ZONES)

    def test_small_device(self):
        """128 MiB of memory and one core are enough."""
        self.boot(memory=128, cores=1)

    def apply_in_vain(self, device, operator):
        operator.tap("systemDateForm_Label")
        operator.find("timezone_ComboBox", ZONES[0])
        self.choose(operator, ZONES[1])
        operator.close("DateTimeDialog")
        device.send("dStill there")
        operator.find("=Still there")

    def test_read_only_disk(self):
        device, operator = self.boot(parameters=("ro",))
        self.apply_in_vain(device, operator)
        self.assertEqual(device.run("cat /etc/timezone"), ZONES[0] + "\n")

    def test_full_disk(self):
        device, operator = self.boot()
        device.run("dd if=/dev/zero of=/full bs=1M 2>/dev/null; dd if=/dev/zero of=/full2 bs=1k 2>/dev/null; true")
        self.apply_in_vain(device, operator)

    def test_service_and_panel_are_restarted(self):
        device, operator = self.boot()
        operator.find("=192.168.0.20")
        device.run("killall ovik-simulator")
        device.send("dAlone")
        operator.find("=Alone")
        operator.find("=192.168.0.20")
        device.wait_for("pidof ovik-simulator && dbus-send --system --print-reply --dest=com.quen.OVIK / "
                        "org.freedesktop.DBus.Peer.Ping")
        operator.open_interface(*operator.reach("=192.168.0.20"), "eth1")
        before = device.run("pidof tarnixUI")
        device.run("rm /run/plc/painted; kill -9 " + before)
        device.wait_painted()
        self.assertNotEqual(device.run("pidof tarnixUI"), before)


if __name__ == "__main__":
    unittest.main(verbosity=2)
