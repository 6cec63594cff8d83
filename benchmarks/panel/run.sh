#!/bin/bash
# Builds the panel and a bare window, measures both under a virtual display, with two network interfaces and the
# simulated platform service on the bus, and prints the ratios.
#
#   run.sh [--runs N] [--idle SECONDS]
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset benchmark >/dev/null
cmake --build --preset benchmark --target tarnixUI bare-window bare-panel stopwatch ovik-simulator
tools/sandbox.sh -- tools/device.sh --screen 800x480 --service build/benchmark -- \
    benchmarks/panel/run.py build/benchmark "$@"
