#!/bin/bash
# Builds the panel and a bare window, measures both under a virtual display, with two network interfaces and the
# simulated platform service on the bus, and prints the ratios.
#
#   run.sh [--runs N] [--idle SECONDS]
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset benchmark >/dev/null
cmake --build --preset benchmark --target tarnixUI bare-window firstpaint ovik-simulator
# shellcheck disable=SC2016 # expanded inside
tools/sandbox.sh -- bash -c '
    ip link add eth0 type veth peer name eth1
    export DBUS_SYSTEM_BUS_ADDRESS=unix:path=/tmp/system-bus
    dbus-daemon --session --nofork --address="$DBUS_SYSTEM_BUS_ADDRESS" 2>/dev/null &
    Xvfb -screen 0 800x480x24 -nolisten tcp -displayfd 3 3>/tmp/display 2>/dev/null &
    until [[ -s /tmp/display && -S /tmp/system-bus ]]; do sleep 0.1; done
    build/benchmark/simulator/ovik-simulator --system >/tmp/service &
    until grep -qs ready /tmp/service; do sleep 0.1; done
    DISPLAY=:$(</tmp/display) python3 benchmarks/panel/run.py build/benchmark "$@"' run "$@"
