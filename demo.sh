#!/bin/bash
# Builds the panel and shows it, driven by a simulated runtime. Nothing it does reaches the machine's own clock, /etc,
# /usr or /tmp/tarnixUI.
#
#   demo.sh [--display x11|wayland|framebuffer] [--screen WIDTHxHEIGHT] [--keyboard] [--qt 5|6] [--headless DIR]
#   demo.sh --device [--screen WIDTHxHEIGHT] [--keyboard] [--rotate 90] [--platform linuxfb|eglfs] [--headless DIR]
#
# --device    on an emulated AArch64 device that boots with the panel's packages; the mouse is the finger on its screen
# --display   the panel as a client of X, of weston (in a window), or with a frame buffer of its own (through VNC); X if
#             not given
# --screen    size of the device's screen, 800x480 if not given; up to 480 wide the wink has its other layout
# --keyboard  with an on-screen keyboard
# --rotate    the touch screen is mounted turned by that many degrees
# --platform  what the panel draws on: the device's frame buffer, or KMS through OpenGL
# --qt        major version of Qt that the panel is built with, 5 if not given
# --headless  plays the whole tour without questions and leaves a picture of every stage in DIR
set -euo pipefail

fnUsage() { # MISTAKE
    sed -n '2,16s/^# \?//p' "$0" >&2
    printf 'demo.sh: %s\n' "$1" >&2
    exit 2
}

fnPlatform() { # DISPLAY: prints Qt's name for it
    case $1 in
    x11) echo xcb ;;
    wayland) echo wayland ;;
    framebuffer) echo vnc ;;
    *) return 1 ;;
    esac
}

fnEmulated() { # builds for the device, boots it and plays the tour
    [[ -z $pictures ]] || mkdir -p "$pictures"
    packaging/install-build-packages.sh --aarch64
    device/image.sh --build >/dev/null
    [[ -z $keyboard ]] || emulated+=(--keyboard)
    if [[ -n $pictures ]]; then
        emulated=(--pictures "$pictures" "${emulated[@]}")
    elif xdpyinfo >/dev/null 2>&1; then
        emulated+=(--window)
    else
        fnNoWindow
    fi
    demo/emulated.sh "${emulated[@]}" --screen "$screen"
}

fnNoWindow() {
    echo 'demo.sh: no window, as DISPLAY names no X display that can be used; --headless DIR makes pictures instead' >&2
}

fnWindow() { # opens the device's screen as a window of the user's display; fails if that cannot be
    Xephyr -screen "$screen" -title tarnixUI -displayfd 3 3>"$work/display" 2>"$work/xephyr.log" &
    window=$!
    until [[ -s $work/display ]]; do
        kill -0 "$window" 2>/dev/null || return 1
        sleep 0.1
    done
}

screen=800x480
pictures=
keyboard=
preset=dev
platform=xcb
device=
simulated=
emulated=()
while (($#)); do
    case $1 in
    --keyboard) keyboard=1 ;;
    --qt)
        [[ ${2:-} == [56] ]] || fnUsage "wrong: --qt ${2:-}"
        [[ $2 == 5 ]] || preset=dev-qt6
        simulated=$1
        shift
        ;;
    --device) device=1 ;;
    --rotate | --platform)
        [[ "$1 ${2:-}" =~ ^--(rotate (0|90)|platform (linuxfb|eglfs))$ ]] || fnUsage "wrong: $1 ${2:-}"
        emulated+=("$1" "$2")
        shift
        ;;
    --display)
        platform=$(fnPlatform "${2:-}") || fnUsage "wrong: --display ${2:-}"
        simulated=$1
        shift
        ;;
    --screen | --headless)
        [[ -n ${2:-} ]] || fnUsage "nothing behind $1"
        [[ $1 == --screen ]] && screen=$2 || pictures=$(realpath -m "$2")
        shift
        ;;
    *) fnUsage "unknown: $1" ;;
    esac
    shift
done
[[ $screen =~ ^[1-9][0-9]{1,3}x[1-9][0-9]{1,3}$ ]] || fnUsage "wrong: --screen $screen"

if [[ -n $device ]]; then
    [[ -z $simulated ]] || fnUsage "no $simulated with --device"
    ((${screen%x*} >= 200 && ${screen#*x} >= 200 && ${screen%x*} <= 2000 && ${screen#*x} <= 2000)) ||
        fnUsage "the emulated device has screens from 200x200 to 2000x2000"
elif ((${#emulated[@]})); then
    fnUsage "no ${emulated[0]} without --device"
fi

cd "$(dirname "$0")"
tools/sandbox.sh --check
if [[ -n $device ]]; then
    fnEmulated
    exit
fi
packaging/install-build-packages.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target tarnixUI ovik-simulator probe keypad

work=$(mktemp -d)
window=
trap '[[ -z $window ]] || kill "$window" 2>/dev/null; rm -rf "$work"' EXIT
mkdir "$work/pictures"

keep=(--keep "$work/pictures")
display=(--screen "$screen")
if [[ -z $pictures && -n ${DISPLAY:-} ]] && fnWindow; then
    keep+=(--keep /tmp/.X11-unix)
    display=()
    DISPLAY=:$(<"$work/display")
elif [[ -z $pictures ]]; then
    fnNoWindow
fi
if [[ $platform == vnc ]]; then # at 96 dpi
    platform=vnc:size=$screen:mmsize=$((${screen%x*} * 254 / 960))x$((${screen#*x} * 254 / 960))
fi
environment=(QT_QPA_PLATFORM="$platform")
[[ -z $keyboard ]] || environment+=(QT_IM_MODULE=tarnixui-keypad)
options=()
[[ -z $pictures ]] || options=(--pictures "$work/pictures")

tools/sandbox.sh "${keep[@]}" -- tools/device.sh --service "build/$preset" "${display[@]}" -- \
    env "${environment[@]}" demo/runtime.sh "${options[@]}" "build/$preset"
if [[ -n $pictures ]]; then
    mkdir -p "$pictures"
    cp "$work"/pictures/*.png "$pictures"
    echo "The pictures are in $pictures"
fi
