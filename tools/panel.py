"""The panel as tests start it: with the probe, as a child process."""
import os
import subprocess
import time

from finger import Finger


class Fault(Exception):
    """What the panel did wrong."""


def fail(what):
    raise Fault(what)


def start(command, **options):
    """Starts the panel with the probe, waits until it has painted, and returns its process."""
    program = os.path.realpath(command[-1])
    probe = {"QT_QPA_PLATFORM": "xcb", "QT_QPA_GENERIC_PLUGINS": "probe:/tmp/probe",
             "QT_PLUGIN_PATH": os.path.dirname(os.path.dirname(program)) + "/tools/plugins"}
    os.mkfifo("/tmp/tarnixUI")
    process = subprocess.Popen(command, stdin=subprocess.PIPE, env={**os.environ, **probe}, bufsize=0, **options)
    with open("/tmp/tarnixUI", encoding="ascii") as pipe:
        pipe.read()  # what it writes after its first paint
    return process


def wait(condition, complaint, seconds=None):
    """Waits until the condition holds; fails with the complaint if it does not."""
    deadline = time.monotonic() + (seconds or Finger.PATIENCE)
    while not condition():
        if time.monotonic() > deadline:
            fail(complaint)
        time.sleep(0.05)
