#!/bin/bash
# Builds the panel and shows it, driven by a simulated runtime. Nothing it does reaches the machine's own clock, /etc,
# /usr or /tmp/tarnixUI.
#
#   demo.sh [--screen WIDTHxHEIGHT] [--keyboard] [--headless DIR]
#
# --screen    size of the device's screen, 800x480 if not given; up to 480 wide the wink has its other layout
# --keyboard  with an on-screen keyboard
# --headless  plays the whole tour without questions and leaves a picture of every stage in DIR
set -euo pipefail

fnUsage() {
    sed -n '2,9s/^# \?//p' "$0" >&2
    exit 2
}

screen=800x480
pictures=
keyboard=()
while (($#)); do
    case $1 in
    --keyboard) keyboard=(--keyboard) ;;
    --screen | --headless)
        [[ -n ${2:-} ]] || fnUsage
        [[ $1 == --screen ]] && screen=$2 || pictures=$(realpath -m "$2")
        shift
        ;;
    *) fnUsage ;;
    esac
    shift
done
[[ $screen =~ ^[1-9][0-9]*x[1-9][0-9]*$ ]] || fnUsage

cd "$(dirname "$0")"
packaging/install-build-packages.sh "${keyboard[@]}"
cmake --preset dev >/dev/null
cmake --build --preset dev --target tarnixUI ovik-simulator probe

work=$(mktemp -d)
server=
trap '[[ -z $server ]] || kill "$server" 2>/dev/null; rm -rf "$work"' EXIT

fnServer() { # COMMAND...: starts an X server; fails if it does not come up
    "$@" -displayfd 3 3>"$work/display" 2>"$work/server.log" &
    server=$!
    until [[ -s $work/display ]]; do
        kill -0 "$server" 2>/dev/null || return 1
        sleep 0.1
    done
}

fnVirtual() { fnServer Xvfb -screen 0 "${screen}x24" -nolisten tcp || { cat "$work/server.log" >&2; exit 1; }; }

if [[ -n $pictures || -z ${DISPLAY:-} ]]; then
    fnVirtual
else
    fnServer Xephyr -screen "$screen" -title tarnixUI || fnVirtual
fi

options=()
[[ -z $pictures ]] || options=(--pictures "$work/pictures")
mkdir "$work/pictures"
[[ -z ${keyboard[*]} ]] || export QT_IM_MODULE=qtvirtualkeyboard QT_QUICK_BACKEND=software
unset QT_SCALE_FACTOR QT_AUTO_SCREEN_SCALE_FACTOR QT_FONT_DPI QT_STYLE_OVERRIDE
DISPLAY=:$(<"$work/display") QT_QPA_PLATFORM=xcb tools/sandbox.sh --keep /tmp/.X11-unix --keep "$work/pictures" -- \
    demo/runtime.sh "${options[@]}" build/dev
if [[ -n $pictures ]]; then
    mkdir -p "$pictures"
    cp "$work"/pictures/*.png "$pictures"
    echo "The pictures are in $pictures"
fi
