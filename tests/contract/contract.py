#!/usr/bin/python3
"""Takes the examples out of the documents and lets them drive the real panel, or measures the waits that the documents
promise. To be run by device.sh with a screen.

    contract.py examples|waits BUILD_DIR
"""
import functools
import glob
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import time
import xml.etree.ElementTree

ROOT = os.path.realpath(os.path.dirname(__file__) + "/../..")
sys.path.insert(0, ROOT + "/tools")
from finger import Finger

Finger.PACE = 3.0
BUILD = os.path.realpath(sys.argv[2])
XML = ROOT + "/src/platform/com.quen.OVIK.xml"
SYSTEM_BUS = "unix:path=/tmp/contract-bus"
SPEED = 20  # of the panel's time while waits are measured
SLACK = SPEED * 1.0  # seconds that a busy machine adds; less than the 25 of one more call
PROBE = {"QT_PLUGIN_PATH": BUILD + "/tools/plugins", "QT_QPA_GENERIC_PLUGINS": "probe:/tmp/probe",
         "QT_QPA_PLATFORM": "xcb", "LC_ALL": "C.UTF-8"}


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


PAGES = {name: read(f"{ROOT}/docs/{name}.md") for name in ("integrating", "platform-service", "runtime-protocol")}
EXAMPLES = dict(re.findall(r"^ *<!-- example: (\S+) -->\n *```\w+\n(.*?)^ *```$", "".join(PAGES.values()),
                           re.DOTALL | re.MULTILINE))


def table(page, heading):
    """Returns the cells of the table whose heading begins so, row by row."""
    rows = PAGES[page].split("\n| " + heading, 1)[1].split("\n\n", 1)[0].splitlines()[2:]
    return [[cell.strip() for cell in row.strip("|").split("|")] for row in rows]


def expect(what, actual, expected):
    if actual != expected:
        sys.exit(f"{what} is\n{actual}\ninstead of\n{expected}")


def wait(what, condition):
    deadline = time.monotonic() + 20
    while not condition():
        if time.monotonic() > deadline:
            sys.exit(f"not within 20 s: {what}")
        time.sleep(0.05)


def start(unit):
    """Starts the command of a unit as the init system would, but with the probe; its output goes to a file."""
    environment = dict(re.findall(r"^Environment=(\w+)=(.*)$", EXAMPLES[unit], re.MULTILINE))
    command = re.search(r"^ExecStart=(.*)$", EXAMPLES[unit], re.MULTILINE)[1]
    with open(f"/tmp/{unit}.log", "w", encoding="utf-8") as log:
        return subprocess.Popen(command.replace("/usr/share/doc/tarnixui", ROOT + "/docs").split(), stdout=log,
                                stderr=subprocess.STDOUT, stdin=subprocess.PIPE, bufsize=0,
                                env={**os.environ, **environment, **PROBE})


def calls():
    """Returns the calls that the service has printed, as members and arguments."""
    lines = re.findall(r"^com\.quen\.OVIK\.\w+\.(\w+) (.*)$", read("/tmp/ovik-service.service.log"), re.MULTILINE)
    return [(member, json.loads(arguments)) for member, arguments in lines]


def sent():
    return [arguments[1] for member, arguments in calls() if member == "setInterfaceConfigJSON"]


def start_service(document):
    write("/etc/ovik.json", document)
    service = start("ovik-service.service")
    wait("the service is ready", lambda: "ready\n" in read("/tmp/ovik-service.service.log") or service.poll())
    return service


def start_runtime():
    runtime = start("plc-runtime.service")
    wait("the panel has painted", lambda: "has painted" in read("/tmp/plc-runtime.service.log"))
    return runtime, Finger("/tmp/probe")


def end(runtime, service):
    runtime.terminate()
    expect("the runtime's status", runtime.wait(), 0)
    expect("the farewell", "the panel says Good bye!\n" in read("/tmp/plc-runtime.service.log"), True)
    service.kill()
    service.wait()


def start_bus():
    """A system bus with the machine's own rules, by which nobody may own a name or call."""
    rules = re.sub(r"<(user|pidfile|listen)>.*?</\1>|<(fork|syslog)/>", "", read("/usr/share/dbus-1/system.conf"))
    write("/tmp/contract-bus.conf", rules.replace("</busconfig>", f"<listen>{SYSTEM_BUS}</listen></busconfig>"))
    subprocess.Popen(["dbus-daemon", "--nofork", "--config-file=/tmp/contract-bus.conf"])
    wait("the bus listens", lambda: os.path.exists(SYSTEM_BUS.split("=")[1]))
    os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = SYSTEM_BUS


def check_policy():
    expect("the service without a policy", bool(start_service("{}").wait()), True)
    write("/etc/dbus-1/system.d/com.quen.OVIK.conf", EXAMPLES["com.quen.OVIK.conf"])
    subprocess.run(["gdbus", "call", "--system", "--dest", "org.freedesktop.DBus", "--object-path", "/", "--method",
                    "org.freedesktop.DBus.ReloadConfig"], check=True, stdout=subprocess.DEVNULL)


def check_session():
    """What an operator does, with the documents of the page."""
    service = start_service(EXAMPLES["network.json"])
    runtime, finger = start_runtime()
    expect("the first interface", json.loads(EXAMPLES["network.json"])["interfaces"][0],
           json.loads(EXAMPLES["eth0.json"]))
    for label, text in (("=192.168.1.20", None), ("=10.0.0.77", None), ("targetVersionForm_Label", "3.5.19"),
                        ("appnameForm_Label", "Mixer"), ("plcStatusForm_Label", "Running")):
        finger.find(label, text)
    finger.tap("=192.168.1.20")
    finger.type("ipAddress_LineEdit", "10.1.2.3")
    finger.type("subnetMask_LineEdit", "255.0.0.0")
    finger.tap("applyButton")
    wait("Apply has been sent", sent)
    expect("what Apply sends", sent()[-1] + "\n", EXAMPLES["static.json"])
    finger.tap("closeButton")
    finger.find("=10.1.2.3")
    finger.tap("systemTimeForm_Label")
    for number in (1, 2):  # NTP on, then off
        finger.tap("autoUpdate_CheckBox")
        finger.tap("applyButton")
        wait("NTP has been switched", lambda n=number: [member for member, _ in calls()].count("disable") == n)
    finger.tap("closeButton")
    runtime.stdin.write(b"w1\n")
    finger.find("lbl_IP", "10.1.2.3")
    finger.find("lbl_DeviceName", "500/600")
    subprocess.run(["bash", "-ec", EXAMPLES["ask-service.sh"]], check=True, capture_output=True)
    end(runtime, service)
    check_members({member for member, _ in calls()})


def check_members(called):
    """What was called is what the page lists, and the rest of the description is in its other table."""
    described = {}
    for interface in xml.etree.ElementTree.parse(XML).getroot():
        for method in interface.iter("method"):
            types = {"in": "", "out": ""}
            for argument in method.iter("arg"):
                types[argument.get("direction")] += argument.get("type")
            described[interface.get("name"), method.get("name")] = types["in"], types["out"]
    listed = {}
    for _, interface, member, *types, _ in table("platform-service", "Object | Interface | Member"):
        listed[interface.strip("`"), member.strip("`")] = tuple(re.findall(r"^`(\w+)`|$", cell)[0] for cell in types)
    del listed["org.freedesktop.DBus.Peer", "Ping"]
    expect("the members called", called, {member for _, member in listed})
    expect("the signatures listed", listed, {key: described[key] for key in listed})
    never = set()
    for interfaces, members in table("platform-service", "Interface | Members"):
        for interface, name in described:
            if f"`{interface}`" in interfaces and (members[:3] == "all" or f"`{name}`" in members):
                never.add((interface, name))
    expect("the members never called", never, set(described) - set(listed))


def check_invented():
    """A service that describes next to nothing refuses, as what it left out counts as read-only."""
    service = start_service('{"version":0,"interfaces":[{"name":"eth0"},{"name":"eth1","dhcp":true,"label":"Büro"}]}')
    runtime, finger = start_runtime()
    finger.tap("=0.0.0.0")
    finger.type("ipAddress_LineEdit", "10.1.2.3")
    finger.type("subnetMask_LineEdit", "255.0.0.0")
    finger.tap("applyButton")
    wait("Apply has been sent", sent)
    finger.tap("interfaceList_comboBox")
    finger.tap("=eth1")
    finger.tap("applyButton")
    wait("Apply has been sent again", lambda: len(sent()) > 1)
    expect("what Apply invents", sent()[0] + "\n", EXAMPLES["invented.json"])
    expect("a label beyond ASCII", json.loads(sent()[1])["label"], "B?ro")
    wait("the panel logs the refusal", lambda: EXAMPLES["refused.log"] in read("/tmp/plc-runtime.service.log"))
    finger.find("=0.0.0.0")
    finger.tap("closeButton")
    end(runtime, service)


def check_by_hand():
    shell = subprocess.run(["sh", "-c", EXAMPLES["by-hand.sh"].replace("sleep 60", "sleep 1")], stdout=subprocess.PIPE,
                           check=True, env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
    expect("the output by hand", shell.stdout, b"First message\n> Good bye!\n")


class SimulatedService:
    """The simulated service and the panel, whose time runs fast: waits are measured in its seconds."""

    def __init__(self):
        self.service = subprocess.Popen([BUILD + "/simulator/ovik-simulator", "--system"], stdout=subprocess.DEVNULL)
        library = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")[0]
        self.environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "LD_PRELOAD": library,
                            "FAKETIME": f"+0 x{SPEED}"}
        wait("the simulator is there", lambda: self.set("well") == 0)

    @staticmethod
    def set(world, argument=""):
        return subprocess.run(["gdbus", "call", "--system", "--dest", "com.quen.OVIK.Simulator", "--object-path",
                               "/Simulator", "--method", "com.quen.OVIK.Simulator.SetWorld", world, argument],
                              check=False, capture_output=True).returncode

    @staticmethod
    def check(what, measure, promised, least, spare):
        """Fails unless what is measured takes as long as the page promises. It has three tries, as a busy machine makes it
        longer."""
        for _ in range(3):
            took = measure()
            print(f"{what}: {took:.0f} s of {promised} s")
            if took <= promised + spare:
                break
        expect(what, promised * least <= took <= promised + spare, True)

    def start(self, bus="nonexistent"):
        """Returns the panel that has greeted, and how long that took."""
        environment = {**self.environment, "DBUS_SESSION_BUS_ADDRESS": "unix:path=/tmp/" + bus}
        begin = time.monotonic()
        panel = subprocess.Popen([BUILD + "/src/tarnixUI"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0,
                                 stderr=subprocess.DEVNULL, env=environment)
        panel.stdout.read(len("First message\n> "))
        return panel, (time.monotonic() - begin) * SPEED

    def greet(self, bus="nonexistent"):
        panel, took = self.start(bus)
        panel.kill()
        return took

    def check_greetings(self):
        session = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--address=unix:path=/tmp/session-bus"],
                                   stderr=subprocess.DEVNULL)
        slow = "slow", str(1000 // SPEED)
        worlds = ("well", ""), ("absent", ""), slow, ("silent", ""), ("well", ""), ("well", "")
        spare = self.greet() + SLACK  # what takes time without a wait
        for number, (world, row) in enumerate(zip(worlds, table("integrating", "platform service | greeting after"))):
            self.set(*world)
            self.service.send_signal(signal.SIGSTOP if number > 3 else signal.SIGCONT)
            bus = "session-bus" if number > 4 else "nonexistent"
            self.check("greeting, " + row[0], functools.partial(self.greet, bus), float(row[2].split()[0]), 0.98, spare)
        self.service.send_signal(signal.SIGCONT)
        session.kill()

    def quit(self, lines, moment):
        """Returns how long the panel takes to quit."""
        self.set("well")
        panel, _ = self.start()
        self.set("silent")
        panel.stdin.write(lines)
        time.sleep(moment / SPEED)
        begin = time.monotonic()
        panel.stdin.write(b"quit\n")
        panel.wait()
        return (time.monotonic() - begin) * SPEED

    def check_quits(self):
        moments = ((b"", 11), (b"w1\n", 27))  # while the service is asked for all addresses
        for moment, row in zip(moments, table("integrating", "platform service no longer replies")):
            self.check("quit " + row[0], functools.partial(self.quit, *moment), float(row[2].split()[0]), 0.5, SLACK)


def main():
    if sys.argv[1] == "waits":
        simulated = SimulatedService()
        simulated.check_greetings()
        simulated.check_quits()
        return
    os.makedirs("/usr/share/dbus-1/interfaces", exist_ok=True)
    shutil.copy(XML, "/usr/share/dbus-1/interfaces")
    os.symlink(BUILD + "/src/tarnixUI", "/usr/bin/tarnixUI")
    start_bus()
    check_policy()
    check_session()
    check_invented()
    check_by_hand()


if __name__ == "__main__":
    main()
