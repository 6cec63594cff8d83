#!/bin/bash
# Builds the panel and a bare program of the same widgets for the device, and measures both on the emulated device, by a
# clock that counts instructions.
#
#   run.sh [--boots N] [--runs N]
set -euo pipefail
cd "$(dirname "$0")/../.."
packaging/install-build-packages.sh --aarch64
device/image.sh --build >/dev/null
cmake --preset aarch64-benchmark >/dev/null
cmake --build --preset aarch64-benchmark --target tarnixUI bare-panel stopwatch ovik-simulator
device/image.sh --benchmark >/dev/null
benchmarks/device/run.py "$@"
