#!/bin/bash
# A simulated PLC runtime: starts the panel, plays a tour of its commands and then passes the user's lines on.
# To be run in the sandbox, with DISPLAY set.
#
#   runtime.sh [--pictures DIR] BUILD_DIR
#
# --pictures DIR  asks nothing and leaves a picture of every stage in DIR
set -euo pipefail

pictures=
if [[ ${1:-} == --pictures ]]; then
    pictures=$2
    shift 2
fi
build=$1
log=/tmp/tarnixUI.log
stage=0

fnSay() { printf '\n== %s\n' "$*"; }

fnStage() { # NAME TEXT: lets the panel settle and shows what it looks like now
    sleep 1
    stage=$((stage + 1))
    fnSay "$2"
    [[ -z $pictures ]] || import -window root "$(printf '%s/%02d-%s.png' "$pictures" "$stage" "$1")"
    [[ -n $pictures ]] || sleep 2
}

fnSend() { # LINE...
    local line
    for line in "$@"; do
        printf 'runtime> %s\n' "$line"
        printf '%s\n' "$line" >&"${PANEL[1]}"
    done
}

fnPrompt() {
    local line
    fnSay 'Your turn: lines are passed to the panel as they are; "quit" ends it.'
    echo 'Try dNAME, vVERSION, nCOUNT, aINDEXNAME and sINDEXTEXT with a three-digit index, w1, w0.'
    while read -r -p 'runtime> ' line; do
        printf '%s\n' "$line" >&"${PANEL[1]}" 2>/dev/null || return 0
        [[ $line != quit ]] || return 0
    done
    fnSend quit
}

ip link add eth0 type veth peer name eth1 2>/dev/null || true

coproc PANEL { exec "$build/src/tarnixUI" 2>"$log"; }
panel=$PANEL_PID
exec {output}<&"${PANEL[0]}"
read -r greeting <&"$output"
fnSay "The panel greets: $greeting"

until [[ -p /tmp/tarnixUI ]]; do sleep 0.1; done
fnSay "The panel says through its named pipe: $(</tmp/tarnixUI)"
fnStage started 'The panel as it starts'

fnSend 'i4711' 'dQX 500/600' 'v3.4.1'
fnStage device 'Device type and target version'

fnSend n3 'a000Mixer line' 's000Running'
fnStage application 'The main application runs'

fnSend 'a001Förderband Süd' 's001Stop' 'a002Not shown: the last index has no row'
fnStage applications 'Three applications'

fnSend 's000Exception' 's001Running'
fnStage status 'Their status changes'

fnSend n20 'a018A very long application name, longer than the screen of the panel is wide'
xdotool mousemove 200 200 mousedown 1
for y in 190 180 165 150 135 120; do xdotool mousemove 200 "$y" sleep 0.03; done
xdotool mouseup 1
fnStage scrolled 'Twenty applications, scrolled by touch'

fnSend n3
[[ -n $pictures ]] || fnPrompt
[[ -z $pictures ]] || fnSend quit
read -r farewell <&"$output"
wait "$panel" && status=0 || status=$?
fnSay "The panel says $farewell and ends with status $status"
echo 'Its log:'
sed 's/^/  /' "$log"
