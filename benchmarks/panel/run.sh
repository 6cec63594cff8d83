#!/bin/bash
# Builds the panel and a bare window, measures both under a virtual display, with two network interfaces and the
# simulated platform service on the bus, and prints the ratios.
#
#   run.sh [--qt 6] [--runs N] [--idle SECONDS]
#   run.sh [--qt 6] --displays [--runs N]    start and memory alone, on each display that devices have
#
# --qt 6   builds all with Qt 6
set -euo pipefail
cd "$(dirname "$0")/../.."
preset=benchmark
if [[ "${1:-} ${2:-}" == '--qt 6' ]]; then
    shift 2
    preset=benchmark-qt6
fi
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target tarnixUI bare-window bare-panel stopwatch ovik-simulator
fnMeasure() { # OPTION...
    tools/sandbox.sh -- tools/device.sh --screen 800x480 --service "build/$preset" -- \
        benchmarks/panel/run.py "build/$preset" "$@"
}
if [[ ${1:-} != --displays ]]; then
    fnMeasure "$@"
    exit
fi
for display in offscreen x11 openbox matchbox weston-desktop weston-kiosk cage vnc; do
    fnMeasure --display "$display" "${@:2}"
done
