#!/bin/bash
# Runs all benchmarks, or the touch benchmarks in the emulator of the device's processor or on the emulated device. Use an
# idle machine, except for the last. A benchmark fails only if it cannot measure.
#
#   run.sh [--aarch64 | --device]
set -euo pipefail
cd "$(dirname "$0")"
case ${1:-} in
'')
    for benchmark in json platform panel touch; do
        "$benchmark/run.sh"
    done
    touch/run.sh --count
    ;;
--aarch64) touch/run.sh --aarch64 ;;
--device) device/run.sh ;;
*)
    sed -n '5s/^# *//p' "$0" >&2
    exit 2
    ;;
esac
