#!/bin/bash
# Builds the panel and shows it, driven by a simulated runtime. Nothing it does reaches the machine's own clock, /etc,
# /usr or /tmp/tarnixUI.
#
#   demo.sh [--screen WIDTHxHEIGHT] [--headless DIR]
#
# --screen    size of the device's screen, 800x480 if not given
# --headless  plays the whole tour without questions and leaves a picture of every stage in DIR
set -euo pipefail
cd "$(dirname "$0")"

screen=800x480
pictures=
while (($#)); do
    case $1 in
    --screen) screen=${2:?} ;;
    --headless) pictures=${2:?} ;;
    *) sed -n '2,8s/^# \?//p' "$0" >&2; exit 2 ;;
    esac
    shift 2
done
[[ $screen =~ ^[1-9][0-9]*x[1-9][0-9]*$ ]] || { echo "demo.sh: no screen size: $screen" >&2; exit 2; }

packaging/install-build-packages.sh
cmake --preset dev >/dev/null
cmake --build --preset dev --target tarnixUI ovik-simulator

options=()
if [[ -n $pictures ]]; then
    mkdir -p "$pictures"
    options=(--pictures "$(realpath "$pictures")")
fi

work=$(mktemp -d)
trap 'kill "$server" 2>/dev/null; rm -rf "$work"' EXIT
if [[ -z $pictures && -n ${DISPLAY:-} ]]; then
    Xephyr -screen "$screen" -title tarnixUI -displayfd 3 3>"$work/display" 2>"$work/server.log" &
else
    Xvfb -screen 0 "${screen}x24" -nolisten tcp -displayfd 3 3>"$work/display" 2>"$work/server.log" &
fi
server=$!
until [[ -s $work/display ]]; do
    kill -0 "$server" 2>/dev/null || { cat "$work/server.log" >&2; exit 1; }
    sleep 0.1
done

keep=(--keep /tmp/.X11-unix)
[[ -z $pictures ]] || keep+=(--keep "$pictures")
DISPLAY=:$(<"$work/display") simulator/sandbox.sh "${keep[@]}" -- simulator/runtime.sh "${options[@]}" build/dev
