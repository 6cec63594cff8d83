#!/bin/bash
# Runs all benchmarks, or those of the panel alone: built with Qt 6, touched in the emulator of the device's processor, or
# on the emulated device. Use an idle machine, except for the last. A benchmark fails only if it cannot measure.
#
#   run.sh [--qt 6 | --aarch64 | --device]
set -euo pipefail
cd "$(dirname "$0")"
fnPanel() { # OPTION...
    panel/run.sh "$@"
    touch/run.sh "$@"
    touch/run.sh "$@" --count
}
case "$*" in
'')
    json/run.sh
    platform/run.sh
    fnPanel
    ;;
'--qt 6') fnPanel --qt 6 ;;
--aarch64) touch/run.sh --aarch64 ;;
--device) device/run.sh ;;
*)
    sed -n '5s/^# *//p' "$0" >&2
    exit 2
    ;;
esac
