#!/bin/bash
# The PLC runtime, which starts the panel, and an operator, who touches it. They play a tour of all that the panel can
# do; then the user's lines are passed on. To be run by device.sh with the simulated platform service.
#
#   runtime.sh [--pictures DIR] BUILD_DIR
#
# --pictures DIR  asks nothing and leaves a picture of every stage in DIR
set -euo pipefail
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/stages.sh"

build=$1
log=/tmp/tarnixUI.log
calls=/tmp/ovik-simulator.log

fnFail() {
    echo "runtime.sh: $*" >&2
    cat /tmp/*.log >&2 || true
    exit 1
}

fnAwait() { # COMMAND...: until it succeeds
    local i
    for ((i = 0; i < 100; i++)); do
        ! "$@" || return 0
        sleep 0.1
    done
    fnFail "timed out: $*"
}

fnPicture() { import -window root "$1"; }

fnWrite() { printf '%s\n' "$1" >&"$commands"; }

fnSession() { # NAME: what stands between the panel and the X display
    local line
    exec {session}< <(exec tools/session.sh "$1" 2>/tmp/session-errors.log)
    read -r <&"$session" || fnFail "$1 does not start"
}

fnFinger() { tools/finger.py /tmp/probe "$@" || fnFail "the operator fails: $*"; }

fnOnDevice() { bash -c "$1"; }

fnService() { # MEMBER ARGUMENT...: another client of the platform service
    gdbus call --address "$DBUS_SYSTEM_BUS_ADDRESS" --dest com.quen.OVIK --object-path /NetworkManager \
        --method "com.quen.OVIK.NetworkManager.$1" "${@:2}" >/dev/null
}

if [[ $QT_QPA_PLATFORM == wayland ]]; then
    fnSession weston-kiosk
    export WAYLAND_DISPLAY=wayland-0
fi
export QT_PLUGIN_PATH=$build/tools/plugins:$build/keypad QT_QPA_GENERIC_PLUGINS=probe:/tmp/probe
coproc PANEL { exec "$build/src/tarnixUI" 2>"$log"; }
panel=$PANEL_PID
exec {output}<&"${PANEL[0]}" {commands}>&"${PANEL[1]}"
read -r greeting <&"$output" || fnFail 'the panel writes no greeting'
[[ $QT_QPA_PLATFORM != vnc* ]] || fnSession vnc
fnSay "The panel greets: $greeting"

fnAwait test -p /tmp/tarnixUI
fnSay "The panel writes into its named pipe: $(</tmp/tarnixUI)"
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/tour.sh"
[[ -n $pictures ]] || fnPrompt
[[ -z $pictures ]] || fnSend quit
read -r farewell <&"$output" || fnFail 'the panel ends without a farewell'
wait "$panel" && status=0 || status=$?
fnSay "The panel writes \"$farewell\" and ends with status $status"
echo 'Its log:'
sed 's/^/  /' "$log"
echo 'The calls that the platform service received:'
sort "$calls" | uniq -c
