#!/bin/bash
# A simulated device around the panel: a bus with the simulated platform service, two network interfaces, a
# configuration application, and the PLC runtime, which starts the panel, plays a tour of its commands and then passes
# the user's lines on. To be run in the sandbox, with DISPLAY set.
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
calls=/tmp/ovik-simulator.log
stage=0

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
    fnFail "waited in vain: $*"
}

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
        printf '%s\n' "$line" >&"$commands"
    done
}

fnPrompt() {
    local line
    fnSay 'Your turn: lines are passed to the panel as they are; "quit" ends it.'
    echo 'Try dNAME, vVERSION, nCOUNT, aINDEXNAME and sINDEXTEXT with a three-digit index, w1, w0.'
    while IFS= read -r -p 'runtime> ' line || [[ -n $line ]]; do
        printf '%s\n' "$line" >&"$commands" || return 0
        [[ $line != quit ]] || return 0
    done
    fnSend quit
}

fnScroll() { # drags the rows up by a finger's way over half the screen
    local width height i
    read -r width height < <(xdotool getdisplaygeometry)
    xdotool mousemove $((width / 3)) $((height * 9 / 10)) mousedown 1
    for ((i = 18; i >= 8; i--)); do
        xdotool mousemove $((width / 3)) $((height * i / 20))
        sleep 0.03
    done
    sleep 0.3
    xdotool mouseup 1
}

fnDevice() {
    ip link add eth0 type veth peer name eth1
    printf '#!/bin/bash\ntouch /tmp/configuration-started\n' >/usr/bin/kadconfig-app
    chmod +x /usr/bin/kadconfig-app

    export DBUS_SYSTEM_BUS_ADDRESS=unix:path=/tmp/system-bus
    dbus-daemon --session --nofork --address="$DBUS_SYSTEM_BUS_ADDRESS" 2>/tmp/bus.log &
    fnAwait test -S /tmp/system-bus
    "$build/simulator/ovik-simulator" --system >"$calls" &
    fnAwait grep -q ready "$calls"
}

fnService() { # MEMBER ARGUMENT...: another client of the platform service
    gdbus call --address "$DBUS_SYSTEM_BUS_ADDRESS" --dest com.quen.OVIK --object-path /NetworkManager \
        --method "com.quen.OVIK.NetworkManager.$1" "${@:2}" >/dev/null
}

fnDevice
coproc PANEL { exec "$build/src/tarnixUI" 2>"$log"; }
panel=$PANEL_PID
exec {output}<&"${PANEL[0]}" {commands}>&"${PANEL[1]}"
read -r greeting <&"$output" || fnFail 'the panel does not greet'
fnSay "The panel greets: $greeting"

fnAwait test -p /tmp/tarnixUI
fnSay "The panel says through its named pipe: $(</tmp/tarnixUI)"
fnStage started 'The panel as it starts'

fnSend 'i4711' 'dQX 500/600' 'v3.4.1'
fnStage device 'Device type and target version'

fnService setInterfaceConfigJSON eth0 \
    '{"name" : "eth0","dhcp" : false,"ip_address" : "10.0.0.77","netmask" : "255.0.0.0","gateway_ip" : "10.0.0.1"}'
fnService applyNewConfiguration
fnSay 'Somebody gives eth0 another address; the panel looks every ten seconds'
sleep 10
fnStage interfaces 'It shows what the platform service says'

fnScroll
fnSend n3 'a000Mixer line' 's000Running'
fnStage application 'The main application runs; the rows are scrolled to it by touch'
fnScroll

fnSend 'a001Förderband Süd' 's001Stop' 'a002Not shown: the last index has no row'
fnStage applications 'Three applications'

fnSend 's000Exception' 's001Running'
fnStage status 'Their status changes'

xdotool mousemove 30 35 click 1
fnAwait test -e /tmp/configuration-started
fnSay 'The settings button has started the configuration application'

fnSend n20 'a018A very long application name, longer than the screen of the panel is wide'
fnScroll
fnStage scrolled 'Twenty applications, scrolled by touch'

fnSend n3
[[ -n $pictures ]] || fnPrompt
[[ -z $pictures ]] || fnSend quit
read -r farewell <&"$output" || fnFail 'the panel says no farewell'
wait "$panel" && status=0 || status=$?
fnSay "The panel says $farewell and ends with status $status"
echo 'Its log:'
sed 's/^/  /' "$log"
echo 'The calls that the platform service received:'
sort "$calls" | uniq -c
