#!/bin/bash
# Builds the panel and a bare program of the same widgets, touches both on a virtual display, and prints how long each
# takes until it has painted, and the ratios.
#
#   run.sh [--aarch64 | --qt 6] [--count] [--runs N]
#
# --aarch64  builds both for the device's processor and runs them in the emulator
# --qt 6     builds both with Qt 6
# --count    counts instructions and allocations instead; not in the emulator
set -euo pipefail
cd "$(dirname "$0")/../.."
preset=benchmark
native=benchmark
options=()
case "${1:-} ${2:-}" in
'--aarch64 '*)
    shift
    packaging/install-build-packages.sh --aarch64
    preset=aarch64-benchmark
    options=(--emulator qemu-aarch64)
    ;;
'--qt 6')
    shift 2
    preset=benchmark-qt6
    native=$preset
    ;;
esac
cmake --preset "$native" >/dev/null
cmake --build --preset "$native" --target ovik-simulator
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target tarnixUI bare-panel stopwatch
fnMeasure() { # INTERFACES OPTION...
    tools/sandbox.sh -- tools/device.sh --interfaces "$1" --screen 800x480 --service "build/$native" -- \
        benchmarks/touch/run.py "build/$preset" "${options[@]}" "${@:2}"
}
fnMeasure 2 "$@"
echo 'With 12 interfaces:'
fnMeasure 12 --refresh "$@"
