"""The emulated device: QEMU with the image of image.sh, the way in through its agent, and the finger on its screen."""
import json
import os
import select
import shlex
import socket
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.realpath(HERE + "/../tools"))
from finger import Finger


def make_image(*options):
    """Makes the image if it is missing, and returns its folder."""
    return subprocess.run([HERE + "/image.sh", *options], check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def settings_for(platform, screen, rotation):
    """Returns the panel's settings for a screen of that size whose touch screen is mounted turned, the size of the touch
    screen, and what maps a point of the screen to one of the touch screen."""
    width, height = map(int, screen.split("x"))
    size = f"mmsize={width * 254 // 960}x{height * 254 // 960}"
    if platform == "eglfs":
        settings = {"QT_QPA_PLATFORM": "eglfs", "QT_QPA_EGLFS_INTEGRATION": "eglfs_kms", "QT_QPA_EGLFS_HIDECURSOR": "1",
                    "QT_QPA_EGLFS_DISABLE_INPUT": "1",
                    "QT_QPA_EGLFS_PHYSICAL_WIDTH": str(width * 254 // 960),
                    "QT_QPA_EGLFS_PHYSICAL_HEIGHT": str(height * 254 // 960)}
    else:
        settings = {"QT_QPA_PLATFORM": f"linuxfb:fb=/dev/fb0:{size}", "QT_QPA_FB_HIDECURSOR": "1",
                    "QT_QPA_FB_DISABLE_INPUT": "1"}
    if not rotation:
        return settings, screen, lambda x, y: (x, y)
    settings["QT_QPA_GENERIC_PLUGINS"] = f"evdevtouch:/dev/input/touchscreen:rotate={rotation}"
    return settings, f"{height}x{width}", lambda x, y: (y, width - 1 - x)


class Device:
    """A device that boots with the image's folder. Its disk forgets what was written, unless DISK is given.
    Settings go to the kernel's command line, and from there to the panel's environment. With ICOUNT, which QEMU's option
    of this name takes, the device's clock counts instructions. Every operation fails with TimeoutError after PATIENCE seconds."""
    PATIENCE = 120

    def __init__(self, image, screen="800x480", sensor=None, settings=None, parameters=(), probe=True, keyboard=False, window=False,
                 icount=None, disk=None, display="virtio-gpu-pci", memory=256, cores=2, options=()):
        self.folder = tempfile.TemporaryDirectory(prefix="device-")
        self.log = self.folder.name + "/console.log"
        ours, theirs = zip(*(socket.socketpair() for _ in range(2)))
        self.qmp, self.agent = ours
        self.events, self.replies = (end.makefile("rb") for end in ours)
        for end in ours:
            end.settimeout(self.PATIENCE)
        width, height = screen.split("x")
        size = f",xres={width},yres={height}" if display.startswith("virtio-gpu") else ",romfile="
        settings = dict(settings or {})
        words = [f"screen={sensor or screen}", "console=ttyAMA0", "quiet", "panic=-1", "dummy.numdummies=2", *parameters]
        plugins = [settings.pop("QT_QPA_GENERIC_PLUGINS", "evdevtouch:/dev/input/touchscreen")]
        if keyboard:
            words.append("keyboard=1")
            plugins += ["evdevkeyboard:/dev/input/keyboard"] * bool(plugins[0])  # else libinput reads it
        if probe:
            words.append("QT_PLUGIN_PATH=/run/emulator/plugins")
            plugins.append("probe:/tmp/probe")
        words += ["QT_QPA_GENERIC_PLUGINS=" + ",".join(filter(None, plugins))]
        words += [f"{name}={value}" for name, value in settings.items()]
        # The screen keeps its content: no blanking, no cursor of the console.
        words += ["consoleblank=0", "vt.global_cursor_default=0", f"video={screen}"]
        drive = f"file={disk or image + '/disk.img'},if=none,id=disk,format=raw"
        clock = ["-accel", "tcg,thread=single", "-icount", icount] if icount else ["-accel", "tcg,thread=multi"]
        command = [
            "qemu-system-aarch64", "-M", "virt", "-cpu", "cortex-a53", *clock, "-smp", str(cores),
            "-m", str(memory), "-nodefaults", "-no-user-config", "-nic", "none", "-no-reboot",
            "-kernel", image + "/kernel", "-initrd", image + "/initrd", "-append", " ".join(words),
            "-drive", drive + ("" if disk else ",snapshot=on"), "-device", "virtio-blk-pci,drive=disk",
            "-device", display + size, "-serial", "file:" + self.log,
            "-chardev", f"socket,id=qmp,fd={theirs[0].fileno()}", "-mon", "chardev=qmp,mode=control",
            "-device", "virtio-serial-pci", "-chardev", f"socket,id=agent,fd={theirs[1].fileno()}",
            "-device", "virtserialport,chardev=agent", *options]
        self.window = self.folder.name + "/window" if window else None
        command += ["-vnc", "unix:" + self.window] if window else ["-display", "none"]
        command += ["-device", "virtio-tablet-pci"] * window + ["-device", "virtio-keyboard-pci"] * keyboard
        self.started = time.monotonic()
        with open(self.folder.name + "/emulator.log", "w", encoding="utf-8") as messages:
            self.process = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", *command], stdin=subprocess.DEVNULL,
                                            stderr=messages, pass_fds=[end.fileno() for end in theirs])
        for end in theirs:
            end.close()
        self.control("qmp_capabilities")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()

    def kill(self):
        """Cuts the power."""
        self.process.kill()
        self.process.wait()
        for end in (self.events, self.replies, self.qmp, self.agent):
            end.close()
        self.folder.cleanup()

    def control(self, command, **arguments):
        """Has the emulator do something, and returns what it says."""
        self.qmp.sendall(json.dumps({"execute": command, "arguments": arguments}).encode() + b"\n")
        while line := self.next_line(self.events):
            reply = json.loads(line)
            if "error" in reply:
                raise RuntimeError(reply["error"]["desc"])
            if "return" in reply:
                return reply["return"]
        raise self.end()

    @staticmethod
    def next_line(file):
        """Returns the next line, or nothing at the end of the emulator."""
        try:
            return file.readline()
        except ConnectionResetError:  # it has not read all
            return b""

    def end(self):
        """Returns what to raise when the emulator has ended."""
        with open(self.folder.name + "/emulator.log", encoding="utf-8") as messages:
            return ConnectionError("the emulator has ended: " + messages.read().strip())

    def ask(self, request):
        """Has the agent do something, and returns its status and what it says."""
        self.agent.sendall(request.encode() + b"\n")
        deadline = time.monotonic() + self.PATIENCE
        while not select.select([self.agent], [], [], 1)[0]:
            if time.monotonic() > deadline:
                raise TimeoutError(f"no answer to {request}")
            self.control("query-status")  # an emulator that counts may miss a timer and sleep until something happens
        line = self.next_line(self.replies)
        if not line:
            raise self.end()
        status, size = map(int, line.split())
        return status, self.replies.read(size).decode(errors="replace")

    def run(self, command):
        """Runs a command of one line on the device as root, and returns what it prints."""
        status, text = self.ask("run " + command)
        if status:
            raise RuntimeError(f"{command}: {status}, {text}")
        return text

    def uptime(self):
        """Returns for how many seconds the kernel has run."""
        return float(self.run("cat /proc/uptime").split()[0])

    def succeeds(self, command):
        """Returns whether the command succeeds."""
        return self.ask("run " + command)[0] == 0

    def state(self):
        """Returns the end of the panels' logs and the path of a picture, for the message of a wait in vain."""
        handle, path = tempfile.mkstemp(prefix="device-", suffix=".png")
        os.close(handle)
        self.picture(path)
        return f"; picture: {path}; log of the panels: {self.run('tail -n 30 /run/plc/*log')}"

    def wait(self, condition, what):
        """Waits until the condition holds."""
        deadline = time.monotonic() + self.PATIENCE
        while not condition():
            if time.monotonic() > deadline:
                raise TimeoutError(what + self.state())
            time.sleep(0.1)

    def wait_for(self, command):
        """Waits until the command succeeds on the device."""
        self.wait(lambda: self.succeeds(command), command)

    def wait_painted(self):
        """Waits until the panel has told its runtime that it has painted."""
        self.wait_for("test -e /run/plc/painted")

    def wait_shown(self):
        """Waits until something is on the screen, which on eglfs is later."""
        path = self.folder.name + "/screen.ppm"

        def is_shown():
            self.control("screendump", filename=path)
            with open(path, "rb") as picture:
                return any(picture.read()[20:])  # behind the header
        self.wait(is_shown, "the screen stays black")

    def send(self, *lines):
        """Passes lines to the panel."""
        for line in lines:
            self.run(f"printf '%s\\n' {shlex.quote(line)} >/run/plc/commands")

    def restart(self, **settings):
        """Has the runtime start the panel again, with settings of the environment and with the probe."""
        settings = {"QT_PLUGIN_PATH": "/run/emulator/plugins", **settings}
        lines = " ".join(shlex.quote(f"{name}={shlex.quote(value)}") for name, value in settings.items())
        self.run(f"printf '%s\\n' {lines} >/run/plc/settings; rm -f /run/plc/painted /tmp/probe; killall tarnixUI")
        self.wait_painted()

    def picture(self, path):
        """Writes what the screen shows as PNG."""
        self.control("screendump", filename=os.path.realpath(path), format="png")


class DeviceFinger(Finger):
    """The finger on the device's touch screen. TURN maps a point of the picture to one of the touch screen."""

    def __init__(self, device, turn=lambda x, y: (x, y)):  # no socket of its own: the agent has it
        self.device = device
        self.turn = turn
        self.place = (0, 0)

    def ask(self, line):
        """Returns the probe's reply."""
        status, text = self.device.ask("probe " + line)
        if status:
            raise ConnectionError(f"no probe: {os.strerror(status)}")
        return text

    def find(self, name, text=None):
        """Waits for what look() returns."""
        try:
            return super().find(name, text)
        except LookupError as error:
            raise LookupError(f"{error}{self.device.state()}") from None

    def touch(self, steps):
        """Plays steps of the agent's language."""
        self.device.ask("touch " + steps)

    def pointer(self, *words):
        """Does what xdotool would do with these words, on the touch screen."""
        steps, down, rest = [], False, list(words)
        while rest:
            verb = rest.pop(0)
            if verb == "mousemove":
                self.place = self.turn(int(rest.pop(0)), int(rest.pop(0)))
                steps += ["0:%d,%d" % self.place] if down else []
            elif verb == "click":
                count = int(rest.pop(1)) if rest[0] == "--repeat" and rest.pop(0) else 1
                rest.pop(0)
                steps += ["0:%d,%d" % self.place, "60", "0:up", "60"] * count
            elif verb in ("mousedown", "mouseup"):
                rest.pop(0)
                down = verb == "mousedown"
                steps.append("0:%d,%d" % self.place if down else "0:up")
            elif verb == "type":
                del rest[:2]
                self.press(*("dot" if sign == "." else sign.lower() for sign in rest.pop(0)))
            elif verb == "key":
                self.touch(" ".join(steps))
                steps.clear()
                self.press({"Return": "ret"}.get(rest[0], rest[0]))
                rest.pop(0)
            elif verb == "sleep":
                steps.append(str(round(float(rest.pop(0)) * 1000)))
            else:
                raise ValueError(f"a finger cannot {verb}")
        self.touch(" ".join(steps))

    def press(self, *keys):
        """Presses keys of the emulator's keyboard, with + between those that are pressed at once."""
        for key in keys:
            codes = [{"type": "qcode", "data": code} for code in key.split("+")]
            self.device.control("send-key", keys=codes)
            self.device.run("usleep 250000")  # it holds each for a tenth of a second of the device's clock
