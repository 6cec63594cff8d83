#!/bin/bash
# Runs the panel on a simulated device for a long time: everything that can happen to it happens at random, its time
# passes ten times as fast, and what it shows, logs and holds is checked. Nothing reaches the machine: see sandbox.sh.
#
#   soak.sh [--minutes N] [--seed N] [--valgrind] [PROGRAM]
#
# --minutes   how long it acts, 5 if not given, with --valgrind 1
# --seed      what happens, and in which order
# --valgrind  the program runs in valgrind, in its own time, and what it holds is not weighed
# PROGRAM     a panel in its build folder; if not given, that of the preset dev is built
#
# The end is a table; the exit status is 0 if all is well, 1 if not, 2 if the call is wrong.
set -euo pipefail

source=$(realpath "$(dirname "$0")/../..")
program=
options=()
while (($#)); do
    case $1 in
    --minutes | --seed)
        [[ ${2:-} =~ ^[0-9]+([.][0-9]+)?$ ]] || { echo "soak.sh: $1 needs a number" >&2; exit 2; }
        options+=("$1" "$2")
        shift
        ;;
    --valgrind) options+=(--valgrind) ;;
    -*) sed -n '2,13s/^# \?//p' "$0" >&2; exit 2 ;;
    *) program=$(realpath "$1") ;;
    esac
    shift
done

if [[ -z $program ]]; then
    cd "$source"
    packaging/install-build-packages.sh
    cmake --preset dev >/dev/null
    cmake --build --preset dev --target tarnixUI ovik-simulator probe
    program=$PWD/build/dev/src/tarnixUI
fi
unset QT_SCALE_FACTOR QT_AUTO_SCREEN_SCALE_FACTOR QT_FONT_DPI QT_STYLE_OVERRIDE QT_IM_MODULE
exec "$source/tools/sandbox.sh" --keep "$(dirname "$(dirname "$program")")" -- "$source/tests/soak/soak.py" "${options[@]}" "$program"
