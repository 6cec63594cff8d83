#!/usr/bin/env python3
"""Runs the panel on a simulated device for a long time: everything that can happen to it happens at random, its time
passes ten times as fast, and what it shows, logs and holds is checked. Prints a table; the exit status is 0 if all is
well, 1 if not, 2 for wrong arguments. Nothing reaches the machine: see tools/sandbox.sh.
"""
import argparse
import collections
import json
import os
import random
import signal
import subprocess
import sys
import time

from commands import FIELDS, Commands
from watchedpanel import TOOLS, Panel
from panel import Fault, fail, wait

LAUNCHES = "/tmp/kadconfig-app.log"
DIALOGS = ("NetworkSettingsDialog", "DateTimeDialog")
FAULTS = {"absent": [""], "slow": ["150"], "errors": ["", "getInterfaceConfig", "getConfigJSON"], "silent": [""],
          "wrong-types": ["", "json"], "short-records": ["2"], "unknown-interface": ["", "eth0"], "vanishes": [":300"],
          "malformed-json": [
              "", "null", "{}", '"', '{"name":1}', '{"name":"eth0","dhcp":1e999}', "[" * 50000, '{"name":"\\ud800"}',
              '{"version":0,"interfaces":[{"name":"a"},{"name":"a"}]}', '{"version":7,"bridge":{"list":[{}]}}', "\x01ÿ€"]}
# What is weighed at rest, and by how much it may grow: memory from the middle to the end, all else from the start.
HELD = {"QObjects": 0, "timers": 0, "descriptors": 0, "threads": 0, "children": 0, "heap KiB": 64,
        "resident KiB": 4096}


def call(name, interface, member, *arguments):
    subprocess.run(["gdbus", "call", "--system", "--dest", name, "--object-path", "/" + interface,
                    "--method", f"com.quen.OVIK.{interface}.{member}", *map(json.dumps, arguments)],
                   check=True, stdout=subprocess.DEVNULL, timeout=30)


def set_world(*arguments):
    call("com.quen.OVIK.Simulator", "Simulator", "SetWorld", *arguments)


class Soak:
    """What happens to the panel, with how often it does in ACTIONS."""
    ACTIONS = {"commands": 12, "fault": 4, "network": 2, "date": 2, "anywhere": 2, "wink": 2, "address": 1, "glance": 1,
               "restart": 1, "settings": 1, "clock": 1}

    def __init__(self, options):
        self.options = options
        self.dice = random.Random(options.seed)
        self.runtime = Commands(self.dice)
        self.done = collections.Counter()
        self.addresses, self.samples = 0, []
        self.panel = self.finger = None

    def chance(self, probability=0.5):
        return self.dice.random() < probability

    def start(self):
        open(LAUNCHES, "x", encoding="ascii").close()
        self.start_service()
        self.panel = Panel(self.options.program, self.options.valgrind)
        self.finger = self.panel.finger

    def start_service(self):
        simulator = os.path.dirname(os.path.dirname(self.options.program)) + "/simulator/ovik-simulator"
        self.service = subprocess.Popen([simulator, "--system", "--lease-delay", "200"], stdout=subprocess.PIPE)
        self.service.stdout.readline()
        self.service.stdout.close()  # it goes on when nobody reads its lines any more

    def renew_address(self):
        self.addresses += 1
        self.address_text = f"10.9.{self.addresses // 200}.{self.addresses % 200 + 1}"

    def commands(self):
        data = b"\n".join(self.runtime.burst(self.dice.choice((1, 3, 10, 100, 1000, 5000)))) + b"\n"
        cuts = sorted(self.dice.randrange(len(data)) for _ in range(self.dice.randrange(12)))
        for begin, end in zip([0] + cuts, cuts + [len(data)]):
            self.panel.process.stdin.write(data[begin:end])
            time.sleep(self.dice.choice((0, 0.01)))
        self.panel.settle(self.runtime.expected())

    def address(self):
        """The service gives eth0 another address; the panel has to find it."""
        self.renew_address()
        text = {"name": "eth0", "dhcp": False, "ip_address": self.address_text, "netmask": "255.0.0.0"}
        call("com.quen.OVIK", "NetworkManager", "setInterfaceConfigJSON", "eth0", json.dumps(text))
        call("com.quen.OVIK", "NetworkManager", "applyNewConfiguration")
        self.finger.find("=" + self.address_text)

    def fault(self):
        """The service fails in some way, often while the operator taps."""
        name = self.dice.choice(list(FAULTS))
        x, y = self.finger.reach(self.dice.choice(("=" + self.address_text, "systemTimeForm_Label")))
        set_world(name, self.dice.choice(FAULTS[name]))
        self.done["  of the service: " + name] += 1
        if self.chance(0.6):
            self.finger.pointer("mousemove", str(x), str(y), "click", "1")
        time.sleep(self.dice.uniform(0.2, 1.5))
        if name == "silent" and (self.panel.checker or self.chance()):
            set_world("absent", "")  # else each call waits for 25 seconds
        set_world("well", "")
        self.close_all()
        self.address()
        self.close_all()  # what a tap has opened once the panel was no longer kept waiting

    def restart(self):
        """Another service takes the place of one that was killed."""
        self.service.kill()
        self.service.wait()
        time.sleep(self.dice.uniform(0, 1))
        self.start_service()
        self.address()

    def network(self):
        """The operator gives eth0 another address."""
        self.finger.tap("=" + self.address_text)
        self.finger.find("NetworkSettingsDialog")
        if self.chance():
            self.commands()
        self.finger.type("gateway_LineEdit", self.dice.choice(("10.0.0.9", "no address", "999.1", "%s%n\"'")))
        self.finger.tap("applyButton")
        for box in ("useDHCP_comboBox", "interfaceList_comboBox"):
            self.finger.tap(box)
            wait(self.finger.is_list_open, f"{box} opens no list")  # Escape without a list closes the dialog
            self.finger.key("Down", "Escape")
        self.renew_address()
        self.finger.type("ipAddress_LineEdit", self.address_text)
        self.finger.tap("applyButton")
        self.close_all()
        self.finger.find("=" + self.address_text)

    def glance(self):
        """The operator closes a dialog that has only begun to ask the device."""
        self.finger.tap(self.dice.choice(("systemTimeForm_Label", "systemDateForm_Label", "systemTime_Label")))
        self.finger.find("DateTimeDialog")
        self.close_all()

    def date(self):
        """The operator sets zone, server and date."""
        self.finger.tap("systemTimeForm_Label")
        self.finger.find("ntpStatus_Label", "Last sync:64 secs ago")
        if not self.finger.find("autoUpdate_CheckBox")["checked"]:
            self.finger.open("currentDate_DateEdit")
            self.finger.find("qt_calendar_calendarview")
            self.finger.key("Up", "Return")
        zone = self.dice.choice([name for name in ("Asia/Tokyo", "Europe/Rome", "America/Lima") if name != self.zone()])
        self.finger.type("timezone_ComboBox", zone)
        if self.chance():
            self.finger.tap("autoUpdate_CheckBox")
        self.finger.tap("applyButton")
        wait(lambda: self.zone() == zone, f"the zone is not {zone}")
        self.close_all()

    @staticmethod
    def zone():
        with open("/etc/timezone", encoding="ascii") as file:
            return file.read().strip()

    def settings(self):
        before = os.path.getsize(LAUNCHES)
        self.finger.tap("toolButton")
        wait(lambda: os.path.getsize(LAUNCHES) > before, "the settings button starts nothing")

    def anywhere(self):
        """The operator taps and drags without looking."""
        for _ in range(self.dice.randint(1, 5)):
            x, y = self.dice.randrange(800), self.dice.randrange(480)
            self.finger.pointer("mousemove", str(x), str(y), "click", "1")
            if self.chance(0.2):
                self.finger.drag(x, y, self.dice.randrange(480))
        self.clock()  # gives the last tap time to open something
        self.close_all()

    def wink(self):
        self.panel.send(b"w0", b"w1")
        self.finger.find("winkHorWidget")
        self.finger.pointer("mousemove", "400", "240", "click", "1")
        if self.panel.checker or self.chance():
            self.panel.send(b"w0")
        wait(lambda: not self.panel.visible("winkHorWidget"), "the wink does not end")
        self.clock()
        self.close_all()  # the overlay lets the finger through

    def clock(self):
        before = self.finger.find("systemTimeForm_Label")["text"]
        wait(lambda: self.finger.find("systemTimeForm_Label")["text"] != before, "the clock stands still")

    def close_all(self):
        self.panel.send(b"w0")
        wait(self.are_closed, "a dialog cannot be closed")

    def are_closed(self):
        """Closes a dialog if there is one."""
        if not self.panel.visible(*DIALOGS):
            return True
        if self.chance(0.7) and self.panel.visible("closeButton"):
            self.finger.tap("closeButton")
        else:
            self.finger.key("Escape")
        return False

    def rest(self):
        """Brings the panel to the state in which it is weighed, and weighs it."""
        self.close_all()
        self.panel.send(*self.runtime.tidy())
        self.panel.settle(self.runtime.expected())
        self.finger.reach(FIELDS["d"])
        self.finger.pointer("mousemove", "799", "240", "sleep", "0.5")
        self.clock()
        self.panel.check_log(self.runtime.missing)
        self.samples.append(self.panel.weigh())

    def leave(self):
        self.panel.leave()
        self.panel.check_log(self.runtime.missing)

    def act(self, action):
        """Does one thing, within bounds of time."""
        signal.alarm(4 * self.finger.PATIENCE if self.finger else 80)
        getattr(self, action)()
        signal.alarm(0)

    def run(self):
        for action in ("start", "address", *self.ACTIONS, "rest"):  # warms up
            self.act(action)
        begin = time.monotonic()
        length = self.options.minutes * 60
        while time.monotonic() < begin + length:
            action = self.dice.choices(list(self.ACTIONS), self.ACTIONS.values())[0]
            self.done[action] += 1
            self.act(action)
            if time.monotonic() - begin > length * len(self.samples) / 8:
                self.act("rest")
        self.act("rest")
        self.act("leave")

    def report(self, fault):
        """Prints the table and returns the exit status."""
        for name, times in [*sorted(self.done.items()), ("command lines", self.runtime.lines)]:
            print(f"{name:40}{times:8}")
        print(f"\n{'held at rest':24}{'start':>9}{'middle':>9}{'end':>9}{'may grow':>10}")
        for key, bound in HELD.items() if self.samples else ():
            start, middle, end = (self.samples[place][key] for place in (0, len(self.samples) // 2, -1))
            grown = end > (middle if bound else start) + bound and not (bound and self.panel.checker)
            fault = fault or grown * f"grown: {key}"
            print(f"{key:24}{start:9}{middle:9}{end:9}{bound:10}{'  GROWN' * grown}")
        print(f"seed {self.options.seed}: " + (f"FAILED: {fault}" if fault else "all is well"))
        return 1 if fault else 0


def enter(program):
    """Runs this file again, in the sandbox and on a simulated device."""
    os.execv(TOOLS + "/sandbox.sh", [
        "sandbox.sh", "--keep", os.path.dirname(os.path.dirname(program)), "--",
        TOOLS + "/device.sh", "--screen", "800x480", "--", os.path.realpath(__file__), "--inside", *sys.argv[1:]])


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--minutes", type=float, default=5, help="how long it acts; 5")
    parser.add_argument("--seed", type=int, default=1, help="what happens, and in which order; 1")
    parser.add_argument("--valgrind", action="store_true", help="runs the panel in valgrind, in its own time")
    parser.add_argument("--inside", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("program", type=os.path.realpath, help="a panel in its build folder")
    options = parser.parse_args()
    if not options.inside:
        enter(options.program)
    signal.signal(signal.SIGALRM, lambda *_: fail("it hangs"))
    soak = Soak(options)
    try:
        soak.run()
    except (Fault, LookupError, OSError, ValueError, subprocess.SubprocessError) as error:
        return soak.report(f"{error} (status of the panel: {soak.panel and soak.panel.process.poll()})")
    return soak.report("")


if __name__ == "__main__":
    sys.exit(main())
