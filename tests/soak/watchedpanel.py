"""The panel under test: started with the probe, fed with commands, looked at, and weighed."""
import glob
import itertools
import json
import os
import re
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
TOOLS = os.path.realpath(HERE + "/../../tools")
sys.path.insert(0, TOOLS)
from finger import Finger
from panel import Fault, fail, start, wait

LOG = "/tmp/soak.log"
UNWANTED = re.compile(rb"^Q[A-Z]\w*[:(,].*|.*(?:Sanitizer|runtime error|terminate called|ASSERT).*", re.MULTILINE)


def differences(actual, expected):
    """Returns the first entries that differ, each beside the one that was expected."""
    pairs = itertools.zip_longest(actual, expected, fillvalue="nothing")
    found = [f"entry {place} is {ours} in place of {theirs}"
             for place, (ours, theirs) in enumerate(pairs) if ours != theirs]
    return "; ".join(found[:3])


class Panel:
    """A running panel and the finger on it."""

    def __init__(self, program, valgrind):
        with open(program, "rb") as file:
            # A memory checker works neither with another time nor with weighing.
            self.checker = valgrind or b"__asan_init" in file.read()
        Finger.PATIENCE, Finger.PACE = (60, 0.3) if valgrind else (20, 3.0)
        os.environ["LSAN_OPTIONS"] = f"suppressions='{HERE}/../lsan.supp':print_suppressions=0"
        command = [program]
        if valgrind:
            os.environ["QT_ENABLE_REGEXP_JIT"] = "0"
            command = ["valgrind", "--error-exitcode=99", "--child-silent-after-fork=yes", "--leak-check=full",
                       "--errors-for-leak-kinds=definite", f"--suppressions={HERE}/soak.supp", program]
        elif not self.checker:
            library = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1") or fail("there is no libfaketime")
            command = ["env", "LD_PRELOAD=" + library[0], "FAKETIME=+0 x10", program]
        with open(LOG, "wb") as log:
            self.process = start(command, stdout=subprocess.PIPE, stderr=log)
        self.finger = Finger("/tmp/probe")

    def send(self, *lines):
        self.process.stdin.write(b"".join(line + b"\n" for line in lines))

    def visible(self, *names):
        return any(widget["name"] in names for widget in self.finger.widgets())

    def shown(self, names):
        """Returns the texts of the named labels, and those of the rows."""
        labels = [widget for widget in self.finger.widgets() if widget.get("class") == "QLabel"]
        fields = {label["name"]: label["text"] for label in labels if label["name"] in names}
        return fields, sorted(label["text"] for label in labels if not label["name"] and label["text"][:1] == "#")

    def settle(self, expected):
        """Waits until the panel shows what is expected."""
        try:
            wait(lambda: self.shown(expected[0]) == expected, "")
        except Fault:
            fields, rows = self.shown(expected[0])
            fail("commands lost: " + differences([*sorted(fields.items()), *rows],
                                                 [*sorted(expected[0].items()), *expected[1]]))

    def check_log(self, missing):
        """Fails unless the log names exactly the rows that were missing, in order, and has no line of Qt's own."""
        with open(LOG, "rb") as file:
            log = file.read()
        if unwanted := UNWANTED.search(log):
            fail(f"it logs: {unwanted[0]}")
        logged = [int(index) for index in re.findall(rb"not found idx: (\d+)", log)]
        if logged != missing:
            fail("commands lost: of the log's missing rows, " + differences(logged, missing))

    def weigh(self):
        """Returns what the panel holds."""
        self.finger.socket.sendall(b"count\n")
        counts = json.loads(self.finger.replies.readline())
        process = f"/proc/{self.process.pid}"
        pages = int(open(process + "/statm", encoding="ascii").read().split()[1])
        children = [open(path, encoding="ascii").read() for path in glob.glob(process + "/task/*/children")]
        return {"QObjects": counts["objects"], "timers": counts["timers"],
                "descriptors": len(os.listdir(process + "/fd")), "threads": len(os.listdir(process + "/task")),
                "children": len(" ".join(children).split()),
                "heap KiB": counts["heap"] // 1024, "resident KiB": pages * os.sysconf("SC_PAGESIZE") // 1024}

    def leave(self):
        """Ends the panel by command; fails unless it has said all that it has to say, and ends well."""
        self.finger.socket.close()
        self.send(b"quit")
        status, said = self.process.wait(), self.process.stdout.read()
        if (status, said) != (0, b"First message\n> Good bye!\n"):
            fail(f"it ends with status {status}, it has said {said}:\n{open(LOG, encoding='utf-8').read()[-4000:]}")
