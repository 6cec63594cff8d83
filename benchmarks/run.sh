#!/bin/bash
# Runs all benchmarks, or those of the touch in the emulator of the device's processor. Let the machine do nothing else
# meanwhile.
#
#   run.sh [--aarch64]
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
*)
    sed -n '5s/^# *//p' "$0" >&2
    exit 2
    ;;
esac
