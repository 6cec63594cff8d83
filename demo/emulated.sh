#!/bin/bash
# Plays the tour on an emulated device that has booted, whose own runtime has started the panel; then the user's lines are
# passed on.
#
#   emulated.sh [--pictures DIR] OPTION...
#
# --pictures DIR  asks nothing and leaves a picture of every stage in DIR; without it the screen is a window
# OPTION...       what device/control.py takes
set -euo pipefail
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/stages.sh"

fnFail() {
    echo "emulated.sh: $*" >&2
    fnAsk run 'cat /run/plc/log' >&2 || true
    exit 1
}

fnAsk() { # VERB ARGUMENT...: has the operator do something, prints what comes of it
    local status count line
    printf '%s\t' "$@" >&"$questions"
    echo >&"$questions"
    read -r status count <&"$answers" || exit 1 # it has said why it has ended
    while ((count-- > 0)); do
        IFS= read -r line <&"$answers"
        printf '%s\n' "$line"
    done
    return "$status"
}

fnPicture() { fnAsk picture "$1"; }
fnWrite() { fnAsk send "$1"; }
fnFinger() { fnAsk finger "$@" || fnFail "the operator fails: $*"; }
fnOnDevice() { fnAsk run "$1"; }

fnService() { # MEMBER TEXT...: another client of the platform service
    local text command="dbus-send --system --print-reply --dest=com.quen.OVIK /NetworkManager com.quen.OVIK.NetworkManager.$1"
    for text in "${@:2}"; do
        command+=" 'string:$text'"
    done
    fnAsk run "$command" >/dev/null
}

# shellcheck disable=SC2034 # for the tour
[[ " $* " != *' --keyboard '* ]] || QT_IM_MODULE=tarnixui-keypad
coproc OPERATOR { exec "$(dirname "$0")/../device/control.py" ${pictures:+--count} "$@"; }
exec {answers}<&"${OPERATOR[0]}" {questions}>&"${OPERATOR[1]}"
fnSay 'The device is switched on'
fnAsk boot || exit 1
fnSay "The panel greets: $(fnAsk run 'head -n 1 /run/plc/output')"
fnSay "The panel writes into its named pipe: $(fnAsk run 'cat /run/plc/painted')"
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/tour.sh"
fnSay "The device's memory and the panel's, in KiB:"
# shellcheck disable=SC2016 # expanded on the device
fnOnDevice 'free | sed -n 1,2p; grep -E "VmHWM|VmRSS" /proc/$(pidof tarnixUI)/status'
[[ -n $pictures ]] || fnPrompt
[[ -z $pictures ]] || fnSend quit
fnAwaitOnDevice 'grep -q "Good bye" /run/plc/last-output'
fnSay "The panel writes \"$(fnAsk run 'sed -n "s|^> ||p" /run/plc/last-output')\"; its runtime starts it again"
fnAwaitOnDevice 'test -e /run/plc/painted'
echo 'Its log:'
fnOnDevice "sed 's/^/  /' /run/plc/last-log"
echo 'The calls that the platform service received:'
fnOnDevice 'sort /tmp/ovik-simulator.log | uniq -c'
