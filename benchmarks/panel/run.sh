#!/bin/bash
# Builds the panel and a bare window, measures both under a virtual display and prints the ratios.
#
#   run.sh [--runs N] [--idle SECONDS]
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset benchmark >/dev/null
cmake --build --preset benchmark --target tarnixUI bare-window firstpaint
# shellcheck disable=SC2016 # expanded inside
simulator/sandbox.sh -- bash -c '
    Xvfb -screen 0 800x480x24 -nolisten tcp -displayfd 3 3>/tmp/display 2>/dev/null &
    until [[ -s /tmp/display ]]; do sleep 0.1; done
    DISPLAY=:$(</tmp/display) python3 benchmarks/panel/run.py build/benchmark "$@"' run "$@"
