"""Drives the panel, or a peer of it, with the stopwatch loaded (stopwatch.cpp)."""
import os
import re
import socket
import subprocess
import time
from pathlib import Path

CALLGRIND = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/tmp/callgrind.%p", "--compress-strings=no"]
PATIENCE = 100  # seconds


class Program:
    """The panel or its peer with the stopwatch loaded. Each measurement is kept in results under its title."""

    def __init__(self, path, build, count=False, emulator=None, stdout=subprocess.DEVNULL):
        self.count = count
        self.results = {}
        self.answers = 0
        self.used = 0  # processor time before the measurement
        self.socket, theirs = socket.socketpair()
        self.socket.settimeout(PATIENCE)
        environment = dict(os.environ, QT_PLUGIN_PATH=f"{build}/benchmarks/touch/plugins",
                           QT_QPA_GENERIC_PLUGINS=f"stopwatch:{theirs.fileno()}")
        begin = time.monotonic_ns()
        self.process = subprocess.Popen(
            [*(CALLGRIND if count else []), *filter(None, [emulator]), f"{build}/{path}"], env=environment,
            pass_fds=[theirs.fileno()], stdin=subprocess.PIPE, stdout=stdout, stderr=subprocess.DEVNULL)
        theirs.close()
        self.keep("exec to first paint", self.answer()[1] - begin)
        self.settle()

    def answer(self):
        self.answers += 1
        return [int(number) for number in self.socket.recv(100).split()]

    def order(self, text):
        self.used = self.processor_time()
        self.socket.sendall(text.encode())
        return self.answer()

    def keep(self, title, nanoseconds):
        """Adds (milliseconds, of processor time) or (million instructions, allocations) up to the last answer."""
        figures = [nanoseconds / 1e6, self.processor_time() - self.used]
        if self.count:
            dump = Path(f"/tmp/callgrind.{self.process.pid}.{self.answers}").read_text()
            calls = re.findall(r"^cfn=(?:malloc|calloc|realloc|posix_memalign|aligned_alloc)\ncalls=(\d+)", dump, re.M)
            figures = [int(re.search(r"^totals: (\d+)", dump, re.M)[1]) / 1e6, sum(map(int, calls))]
        self.results.setdefault(title, []).append(figures)

    def measure(self, title, order):
        begin, end = self.order(order)
        self.keep(title, end - begin)
        self.settle()

    def write(self, lines):
        self.used = self.processor_time()
        self.process.stdin.write("".join(f"{line}\n" for line in lines).encode())
        self.process.stdin.flush()

    def measure_lines(self, title, lines, target):
        """Measures from the first byte written to the target painted."""
        self.socket.sendall(f"await - {target}".encode())
        self.settle()  # the stopwatch has read it by then
        begin = time.monotonic_ns()
        self.write(lines)
        self.keep(title, self.answer()[1] - begin)
        self.settle()

    def find(self, name):
        begin = time.monotonic()
        while self.order(f"find {name} -")[1] == 0:
            if time.monotonic() > begin + PATIENCE:
                raise TimeoutError(f"{name} does not appear")
            time.sleep(0.1)
        self.settle()

    def measure_drag(self, title):
        self.find("deviceTypeForm_Label")
        self.order("press deviceTypeForm_Label -")
        self.order("move -60 -")
        self.settle()
        for _ in range(10):
            self.measure(title, "move -9 scrollAreaWidgetContents")
        self.order("lift - -")
        self.settle()

    def measure_flick(self, title):
        """Measures the time between two frames while the rows move on after a flick."""
        frames = 20
        self.find("deviceTypeForm_Label")
        self.order("press deviceTypeForm_Label -")
        for _ in range(8):
            self.order("move -30 -")
            time.sleep(0.01)
        begin = self.order("lift - scrollAreaWidgetContents")[1]
        used = self.processor_time()
        for _ in range(frames):
            end = self.order("await - scrollAreaWidgetContents")[1]
        figures = [(end - begin) / 1e6, self.processor_time() - used]
        self.results.setdefault(title, []).append([figure / frames for figure in figures])
        self.settle()

    def settle(self):
        """Waits until the program is at rest."""
        before = None
        while before is None or self.processor_time() - before > 20:
            before = self.processor_time()
            time.sleep(0.25)

    def processor_time(self):
        """Returns milliseconds."""
        files = Path(f"/proc/{self.process.pid}/task").glob("*/schedstat")
        return sum(int(file.read_text().split()[0]) for file in files) / 1e6

    def end(self):
        """Returns the peak resident memory in KiB."""
        self.process.kill()
        _, _, usage = os.wait4(self.process.pid, 0)
        self.process.returncode = 0
        self.socket.close()
        return usage.ru_maxrss
