#!/bin/bash
# Builds the panel and a bare window, measures both under a virtual display, with two network interfaces and the
# simulated platform service on the bus, and prints the ratios.
#
#   run.sh [--runs N] [--idle SECONDS]
#   run.sh --displays [--runs N]        start and memory alone, on each display that devices have
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset benchmark >/dev/null
cmake --build --preset benchmark --target tarnixUI bare-window bare-panel stopwatch ovik-simulator
fnMeasure() { # OPTION...
    tools/sandbox.sh -- tools/device.sh --screen 800x480 --service build/benchmark -- \
        benchmarks/panel/run.py build/benchmark "$@"
}
if [[ ${1:-} != --displays ]]; then
    fnMeasure "$@"
    exit
fi
for display in offscreen x11 openbox matchbox weston-desktop weston-kiosk cage vnc; do
    fnMeasure --display "$display" "${@:2}"
done
