#!/usr/bin/env python3
"""The driver of soak.sh, which tells the options. To be run in the sandbox."""
import argparse
import collections
import glob
import json
import os
import random
import re
import signal
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
TOOLS = os.path.join(HERE, "../../tools")
sys.path.insert(0, TOOLS)
from finger import Finger  # noqa: E402

BUS = "unix:path=/tmp/soak-bus"
LOG = "/tmp/soak.log"
LAUNCHES = "/tmp/launches"
SPEED = 10
ROWS = 60  # more applications than this are never shown
FIELDS = {"d": "deviceTypeForm_Label", "v": "targetVersionForm_Label", "a000": "appnameForm_Label",
          "s000": "plcStatusForm_Label"}
DIALOGS = ("NetworkSettingsDialog", "DateTimeDialog")
FLAVOURS = ["", "Running", "Förderband Süd", "<b>bold</b>&amp;", "  blanks\tand a tab ", "日本語 ✋", "\\n%1 %2 $(id)"]
JUNK = [b"", b"Quit", b"quit ", b"w2", b"w", b"A001x", b" d#", b"\xff\xfe\xc3", b"n\xff", b"n-1", b"n0", b"n99999999999",
        b"z\0d#", b"x" * 300000, b"i4711", b"i", b"nine"]
DIRT = [b"\xff\xfe#\xc3(", b"\xf0\x9f", b"#cut\0off", b"#" + b"long " * 4000, b"\xed\xa0\x80#", b""]
FAULTS = {"absent": [""], "slow": ["150"], "errors": ["", "getInterfaceConfig", "getConfigJSON"], "silent": [""],
          "wrong-types": ["", "json"], "short-records": ["2"], "unknown-interface": ["", "eth0"], "vanishes": [":300"],
          "malformed-json": [
              "", "null", "{}", '"', '{"name":1}', '{"name":"eth0","dhcp":1e999}', "[" * 50000, '{"name":"\\ud800"}',
              '{"version":0,"interfaces":[{"name":"a"},{"name":"a"}]}', '{"version":7,"bridge":{"list":[{}]}}', "\x01ÿ€"]}
# What is weighed at rest, with what it may grow: weights from the middle to the end, all else from the start.
HELD = {"objects": ("QObjects", 0), "timers": ("timers that run", 0), "widgets": ("widgets", 0),
        "topLevels": ("top-level widgets", 0), "fds": ("file descriptors", 0), "threads": ("threads", 0),
        "children": ("child processes", 0), "heap": ("heap in use, KiB", 64),
        "anonymous": ("private memory, KiB", 4096), "rss": ("RSS, KiB", 4096)}
WEIGHTS = ("heap", "anonymous", "rss")
KNOWN = [re.compile(text) for text in (
    r"setPLCStatus: ui element not found idx: \d+  size:  \d+$",
    r"writeToNamedPipe Written message to named pipe successfully$",
    r"onProcessStarted started program \d+$",
    r"onProcessFinished exitCode: \d+ exitStatus QProcess::(Normal|Crash)Exit \d+$",
    r'onReadyReadStandardOutput Current timezone "[\w/+-]*"$',
    r'"64" "377"$', r'"\{\\"ntp\\" : \{\\"server\\" : \\"192\.168\.1\.1\\"\}\}\\n"$',
    r"/bin/sh: 4: File_Permission: not found$", r"chmod: missing operand after ./etc/timezone.$", r"Try 'chmod --help'",
    r"Error setting system time: Operation not permitted$", r"saveDateTime failed$",
    r"(Parse|Scan) error in network (interface|manager) json ", r"Unknown network (interface|manager) json error $",
    r"Trying to parse empty network (interface|configuration) ?json!", r"(Cannot find|Empty) interface name in json$",
    r"Missing required field version, abort", r"Missing bridge name in json$", r'Interface  "a"  already defined$',
    r"==\d+== ?")]


class Fault(Exception):
    """What the panel did wrong."""


def fail(what):
    raise Fault(what)


class Watcher(Finger):
    """Remembers how long the panel took to answer at most."""
    PATIENCE = 20
    PACE = 3.0
    longest = 0.0

    def widgets(self):
        begin = time.monotonic()
        widgets = super().widgets()
        Watcher.longest = max(Watcher.longest, time.monotonic() - begin)
        return widgets


class Runtime:
    """Makes commands and knows what the panel has to show after them."""

    def __init__(self, dice):
        self.dice = dice
        self.count = 0
        self.fields = dict.fromkeys(FIELDS)  # None: told something whose look is not foretold
        self.rows = {}
        self.made = self.shown = self.lines = 0
        self.missing = []  # indices of rows that are not there, which the panel logs

    def text(self, flavour=None):
        self.count += 1
        return f"#{self.count:07} {self.dice.choice(FLAVOURS) if flavour is None else flavour}"

    def field(self, prefix):
        self.fields[prefix] = self.text()
        return (prefix + self.fields[prefix]).encode()

    def row(self, letter, index, flavour=None):
        text = self.text(flavour)
        if index >= self.made:
            self.missing.append(index)
        else:
            self.rows[letter, index] = text
        return f"{letter}{index:03}{text}".encode()

    def number(self, count):
        self.shown = count - 1  # the first extra row cannot be filled: its key is 0
        self.made = max(self.made, self.shown)
        return b"n%d" % count

    def line(self):
        """Returns a command."""
        kind = self.dice.choices("dvasnwjl", (2, 2, 5, 5, 2, 0.3, 2, 0.5))[0]
        self.lines += 1
        if kind in "dv":
            return self.field(kind)
        if kind in "as":
            index = self.dice.randrange(2 * ROWS)
            return self.row(kind, index) if index else self.field(kind + "000")
        if kind == "n":
            return self.number(self.dice.randint(1, ROWS))
        if kind == "w":
            return self.dice.choice((b"w0", b"w1", b"w1 and more"))
        if kind == "j":
            return self.dice.choice(JUNK)
        prefix = self.dice.choice(list(FIELDS))
        self.fields[prefix] = None
        return prefix.encode() + self.dice.choice(DIRT)

    def burst(self, size):
        """Returns that many commands, a last one for each field that was told something odd, and the wink's end."""
        lines = [self.line() for _ in range(size)]
        lines += [self.field(prefix) for prefix, text in self.fields.items() if text is None]
        return b"".join(line + b"\n" for line in lines + [b"w0"])

    def expected(self):
        """Returns the texts of the fields and of the rows that are to be seen."""
        rows = [text for (_, index), text in self.rows.items() if index < self.shown]
        return {FIELDS[prefix]: text for prefix, text in self.fields.items()}, sorted(rows)


class Soak:
    """The device, its operator and what is checked."""

    def __init__(self, options):
        self.options = options
        self.build = os.path.dirname(os.path.dirname(options.program))
        with open(options.program, "rb") as program:
            # A memory checker bears neither another time nor weighing.
            self.checker = options.valgrind or b"__asan_init" in program.read()
        self.dice = random.Random(options.seed)
        self.runtime = Runtime(self.dice)
        self.done = collections.Counter()
        self.addresses = self.log_place = 0
        self.panel = None
        self.samples = []
        if options.valgrind:
            Watcher.PATIENCE, Watcher.PACE = 60, 0.3

    def start(self):
        subprocess.run(["ip", "link", "add", "eth0", "type", "veth", "peer", "name", "eth1"], check=True)
        subprocess.run([TOOLS + "/device/install.sh"], check=True)
        with open("/usr/bin/kadconfig-app", "w", encoding="ascii") as app:
            app.write(f"#!/bin/sh\necho launched >>{LAUNCHES}\n")
        os.chmod("/usr/bin/kadconfig-app", 0o755)
        open(LAUNCHES, "x", encoding="ascii").close()
        xvfb = subprocess.Popen(["Xvfb", "-screen", "0", "800x480x24", "-nolisten", "tcp", "-displayfd", "1"],
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        os.environ.update(DISPLAY=":" + xvfb.stdout.readline().decode().strip(), DBUS_SYSTEM_BUS_ADDRESS=BUS)
        subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--address=" + BUS], stderr=subprocess.DEVNULL)
        self.wait(lambda: os.path.exists(BUS[10:]), lambda: "the bus does not come")
        self.start_service()
        self.start_panel()

    def start_service(self):
        self.service = subprocess.Popen([self.build + "/simulator/ovik-simulator", "--system", "--lease-delay", "200"],
                                        stdout=subprocess.PIPE, env={**os.environ, "LSAN_OPTIONS": "detect_leaks=0"})
        self.service.stdout.readline()
        self.service.stdout.close()  # it goes on when nobody reads its lines any more

    def start_panel(self):
        environment = {**os.environ, "QT_QPA_PLATFORM": "xcb", "QT_PLUGIN_PATH": self.build + "/tests/plugins",
                       "QT_QPA_GENERIC_PLUGINS": "probe:/tmp/probe", "QT_ENABLE_REGEXP_JIT": "0",
                       "LSAN_OPTIONS": f"suppressions='{HERE}/../lsan.supp':print_suppressions=0"}
        command = [self.options.program]
        if self.options.valgrind:
            command = ["valgrind", "--error-exitcode=99", "--child-silent-after-fork=yes", "--leak-check=full",
                       "--errors-for-leak-kinds=definite", f"--suppressions={HERE}/soak.supp", *command]
        elif not self.checker:
            library = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1") or fail("there is no libfaketime")
            environment.update(LD_PRELOAD=library[0], FAKETIME=f"+0 x{SPEED}")
        os.mkfifo("/tmp/tarnixUI")
        with open(LOG, "wb") as log:
            self.panel = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log,
                                          env=environment, bufsize=0)
        with open("/tmp/tarnixUI", encoding="ascii") as pipe:
            pipe.read()
        self.finger = Watcher("/tmp/probe")

    def wait(self, condition, complaint):
        """Waits until the condition holds."""
        deadline = time.monotonic() + Watcher.PATIENCE
        while not condition():
            if time.monotonic() > deadline:
                fail(complaint())
            time.sleep(0.05)

    def visible(self, *names):
        return any(widget["name"] in names for widget in self.finger.widgets())

    def shown(self):
        """Returns what Runtime.expected() foretells."""
        labels = [widget for widget in self.finger.widgets() if widget["class"] == "QLabel"]
        fields = {label["name"]: label["text"] for label in labels if label["name"] in FIELDS.values()}
        return fields, sorted(label["text"] for label in labels if not label["name"] and label["text"][:1] == "#")

    def settle(self):
        """Waits until the panel shows the last that it was told."""
        expected = self.runtime.expected()
        self.wait(lambda: self.shown() == expected, lambda: f"commands lost: {self.shown()} in place of {expected}")

    def call(self, name, path, interface, member, *arguments):
        command = ["gdbus", "call", "--address", BUS, "--dest", name, "--object-path", path,
                   "--method", f"{interface}.{member}", *map(json.dumps, arguments)]
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL, timeout=30)

    def steer(self, member, *arguments):
        self.call("com.quen.OVIK.Simulator", "/Simulator", "com.quen.OVIK.Simulator", member, *arguments)

    def renew_address(self):
        self.addresses += 1
        self.address_text = f"10.9.{self.addresses // 200}.{self.addresses % 200 + 1}"

    # Everything from here to the next comment is an action.

    def commands(self):
        data = self.runtime.burst(self.dice.choice((1, 3, 10, 100, 1000, 5000)))
        cuts = sorted(self.dice.randrange(len(data)) for _ in range(self.dice.randrange(12)))
        for begin, end in zip([0] + cuts, cuts + [len(data)]):
            self.panel.stdin.write(data[begin:end])
            time.sleep(self.dice.choice((0, 0.01)))
        self.settle()

    def address(self):
        """The service gives eth0 another address; the panel has to find it."""
        self.renew_address()
        manager = ("com.quen.OVIK", "/NetworkManager", "com.quen.OVIK.NetworkManager")
        text = {"name": "eth0", "dhcp": False, "ip_address": self.address_text, "netmask": "255.0.0.0"}
        self.call(*manager, "setInterfaceConfigJSON", "eth0", json.dumps(text))
        self.call(*manager, "applyNewConfiguration")
        self.finger.find("=" + self.address_text)

    def fault(self):
        name = self.dice.choice(list(FAULTS))
        x, y = self.finger.reach(self.dice.choice(("=" + self.address_text, "systemTimeForm_Label")))
        self.steer("SetWorld", name, self.dice.choice(FAULTS[name]))
        self.done["  of the service: " + name] += 1
        if self.dice.random() < 0.6:
            self.finger.pointer("mousemove", str(x), str(y), "click", "1")
        time.sleep(self.dice.uniform(0.2, 1.5))
        if name == "silent" and (self.checker or self.dice.random() < 0.5):
            self.steer("SetWorld", "absent", "")  # else each call waits for 25 seconds
        self.steer("SetWorld", "well", "")
        self.close_all()
        self.address()

    def restart(self):
        """Another service in the place of one that was killed."""
        self.service.kill()
        self.service.wait()
        time.sleep(self.dice.uniform(0, 1))
        self.start_service()
        self.address()

    def interfaces(self):
        """Two interfaces come and go; the network dialog lists what there is."""
        subprocess.run(["ip", "link", "add", "eth2", "type", "veth", "peer", "name", "eth3"], check=True)
        for items in (4, 2):
            self.finger.tap("=" + self.address_text)
            if self.finger.find("interfaceList_comboBox")["items"] != items:
                fail(f"the network dialog does not list {items} interfaces")
            self.close_all()
            if items == 4:
                subprocess.run(["ip", "link", "delete", "eth2"], check=True)

    def network(self):
        """The operator gives eth0 another address."""
        self.finger.tap("=" + self.address_text)
        self.finger.find("NetworkSettingsDialog")
        if self.dice.random() < 0.5:
            self.commands()
        self.finger.type("gateway_LineEdit", self.dice.choice(("10.0.0.9", "no address", "999.1", "%s%n\"'")))
        self.finger.tap("applyButton")
        self.finger.tap("useDHCP_comboBox")
        self.finger.key(self.dice.choice(("Up", "Down")), "Escape")
        self.finger.tap("interfaceList_comboBox")
        self.finger.key("Escape")
        self.renew_address()
        self.finger.type("ipAddress_LineEdit", self.address_text)
        self.finger.tap("applyButton")
        self.close_all()
        self.finger.find("=" + self.address_text)

    def date(self):
        """The operator changes the zone, and the server or the date, of which the device lets go only the first."""
        self.finger.tap(self.dice.choice(("systemTimeForm_Label", "systemDateForm_Label", "systemTime_Label")))
        self.finger.find("DateTimeDialog")
        self.finger.find("ntpStatus_Label", "Last sync:64 secs ago")
        with open("/etc/timezone", encoding="ascii") as file:
            zone = self.dice.choice(sorted({"Asia/Tokyo", "Europe/Rome", "America/Lima"} - {file.read().strip()}))
        self.finger.type("timezone_ComboBox", zone)
        automatic = self.finger.find("autoUpdate_CheckBox")["checked"]
        if not automatic:
            x, y, width, height = self.finger.find("currentDate_DateEdit")["rect"]
            self.finger.pointer("mousemove", str(x + width - 10), str(y + height // 2), "click", "1")
            self.finger.find("qt_calendar_calendarview")
            self.finger.key("Escape")
        if self.dice.random() < 0.5:
            self.finger.tap("autoUpdate_CheckBox")
            automatic = not automatic
        if not automatic and self.dice.random() < 0.5:
            self.finger.tap("currentDate_DateEdit")
            self.finger.key("Up")
        self.finger.tap("applyButton")
        self.wait(lambda: open("/etc/timezone", encoding="ascii").read() == zone + "\n",
                  lambda: f"the zone does not become {zone}")
        self.close_all()

    def glance(self):
        """The operator closes a dialog while it has only begun to ask the device."""
        self.finger.tap("systemTimeForm_Label")
        self.finger.find("DateTimeDialog")
        self.close_all()

    def settings(self):
        before = os.path.getsize(LAUNCHES)
        self.finger.tap("toolButton")
        self.wait(lambda: os.path.getsize(LAUNCHES) > before, lambda: "the settings button starts nothing")

    def anywhere(self):
        """The operator taps and drags without looking."""
        for _ in range(self.dice.randint(1, 5)):
            x, y = self.dice.randrange(800), self.dice.randrange(480)
            self.finger.pointer("mousemove", str(x), str(y), "click", "1")
            if self.dice.random() < 0.2:
                self.finger.drag(x, y, self.dice.randrange(480))
        self.close_all()

    def wink(self):
        self.panel.stdin.write(b"w0\nw1\n")
        self.finger.find("winkHorWidget")
        self.finger.pointer("mousemove", "400", "240", "click", "1")
        if self.checker or self.dice.random() < 0.5:
            self.panel.stdin.write(b"w0\n")
        self.wait(lambda: not self.visible("winkHorWidget"), lambda: "the wink does not end")

    def clock(self):
        before = self.finger.find("systemTimeForm_Label")["text"]
        self.wait(lambda: self.finger.find("systemTimeForm_Label")["text"] != before, lambda: "the clock stands still")

    # What follows is done between the actions.

    def close_all(self):
        self.panel.stdin.write(b"w0\n")
        self.wait(self.are_closed, lambda: "a dialog cannot be closed")

    def are_closed(self):
        """Closes a dialog if there is one."""
        if not self.visible(*DIALOGS):
            return True
        if self.dice.random() < 0.7 and self.visible("closeButton"):
            self.finger.tap("closeButton")
        else:
            self.finger.key("Escape")
        return False

    def check_log(self):
        """Reads what was logged since the last time."""
        with open(LOG, "rb") as log:
            log.seek(self.log_place)
            text = log.read()
        text = text[:text.rfind(b"\n") + 1]
        self.log_place += len(text)
        lines = text.decode(errors="replace").split("\n")[:-1]
        for line in lines:
            if not any(pattern.match(line) for pattern in KNOWN):
                fail(f"it logs: {line}")
        logged = [int(index) for index in re.findall(r"not found idx: (\d+)", "\n".join(lines))]
        if logged != self.runtime.missing:
            fail(f"commands lost: it logs the rows {logged} in place of {self.runtime.missing}")
        self.runtime.missing.clear()

    def rest(self):
        """Brings the panel to the state in which it is weighed, and weighs it."""
        self.close_all()
        lines = [self.runtime.number(ROWS + 1)]
        lines += [self.runtime.row(letter, index, "") for letter in "as" for index in range(1, ROWS)]
        self.panel.stdin.write(b"\n".join(lines) + b"\n")
        self.settle()
        lines = [self.runtime.number(1)] + [self.runtime.field(prefix) for prefix in FIELDS]
        self.panel.stdin.write(b"\n".join(lines) + b"\n")
        self.settle()
        self.finger.reach("deviceTypeForm_Label")
        self.finger.pointer("mousemove", "799", "240", "sleep", "0.5")
        self.clock()
        self.check_log()
        self.samples.append(self.weigh())

    def weigh(self):
        self.finger.socket.sendall(b"count\n")
        sample = json.loads(self.finger.replies.readline())
        process = f"/proc/{self.panel.pid}"
        with open(process + "/smaps_rollup", encoding="ascii") as rollup:
            kib = dict(line.split()[:2] for line in rollup if line.split()[0] in ("Rss:", "Anonymous:"))
        children = [open(path, encoding="ascii").read() for path in glob.glob(process + "/task/*/children")]
        sample.update(heap=sample["heap"] // 1024, rss=int(kib["Rss:"]), anonymous=int(kib["Anonymous:"]),
                      fds=len(os.listdir(process + "/fd")), threads=len(os.listdir(process + "/task")),
                      children=len(" ".join(children).split()))
        return sample

    def act(self, action):
        """Does one thing, within bounds of time, and checks that the panel lives."""
        signal.alarm(4 * Watcher.PATIENCE)
        action()
        signal.alarm(0)
        if self.panel.poll():
            fail(f"it died with status {self.panel.returncode}")

    def run(self):
        actions = {self.commands: 12, self.fault: 4, self.network: 2, self.date: 2, self.anywhere: 2, self.wink: 2,
                   self.address: 1, self.glance: 1, self.interfaces: 1, self.restart: 1, self.settings: 1, self.clock: 1}
        for action in (self.start, self.address, *actions):  # warms up
            self.act(action)
        self.act(self.rest)
        begin = time.monotonic()
        length = self.options.minutes * 60
        while time.monotonic() < begin + length:
            action = self.dice.choices(list(actions), actions.values())[0]
            self.done[action.__name__] += 1
            self.act(action)
            if time.monotonic() - begin > length * len(self.samples) / 8:
                self.act(self.rest)
        self.act(self.rest)
        self.act(self.leave)

    def leave(self):
        self.finger.socket.close()
        self.panel.stdin.write(b"quit\n")
        status = self.panel.wait()
        self.check_log()
        said = self.panel.stdout.read()
        if (status, said) != (0, b"First message\n> Good bye!\n"):
            fail(f"it ends with status {status}, it has said {said}:\n{open(LOG, encoding='utf-8').read()[-4000:]}")

    def report(self, fault):
        """Prints the table and returns the exit status."""
        print(f"\n{'action':40}{'times':>8}")
        for name, times in [*sorted(self.done.items()), ("command lines", self.runtime.lines)]:
            print(f"{name:40}{times:8}")
        print(f"\n{'held at rest':24}{'start':>9}{'middle':>9}{'end':>9}{'may grow':>10}")
        for key, (name, bound) in HELD.items() if self.samples else ():
            if key in WEIGHTS and self.checker:
                continue
            start, middle, end = (self.samples[place][key] for place in (0, len(self.samples) // 2, -1))
            grown = end > (middle if key in WEIGHTS else start) + bound
            fault = fault or grown * f"grown: {name}"
            print(f"{name:24}{start:9}{middle:9}{end:9}{bound:10}{'  GROWN' * grown}")
        print(f"\nThe longest wait for an answer was {Watcher.longest:.1f} s.")
        print(f"seed {self.options.seed}: " + (f"FAILED: {fault}" if fault else "all is well"))
        return 1 if fault else 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--minutes", type=float)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--valgrind", action="store_true")
    parser.add_argument("program")
    options = parser.parse_args()
    options.minutes = options.minutes or (1 if options.valgrind else 5)
    signal.signal(signal.SIGALRM, lambda *_: fail("it hangs"))
    soak = Soak(options)
    try:
        soak.run()
    except (Fault, LookupError, OSError, ValueError, subprocess.SubprocessError) as error:
        return soak.report(f"{error} (status of the panel: {soak.panel and soak.panel.poll()})")
    return soak.report("")


if __name__ == "__main__":
    sys.exit(main())
