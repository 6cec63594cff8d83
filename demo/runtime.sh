#!/bin/bash
# The PLC runtime, which starts the panel, and an operator, who touches it. They play a tour of all that the panel can
# do; then the user's lines are passed on. To be run by device.sh with the simulated platform service.
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
    fnFail "timed out: $*"
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

fnSession() { # NAME: what stands between the panel and the X display
    local line
    exec {session}< <(exec tools/session.sh "$1" 2>/tmp/session-errors.log)
    read -r line <&"$session" || fnFail "$1 does not start"
}

fnFinger() { tools/finger.py /tmp/probe "$@" || fnFail "the operator fails: $*"; }

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
fnStage started 'The panel as it starts'

fnSend 'i4711' 'dQX 500/600' 'v3.4.1'
fnStage device 'Device type and target version'

fnService setInterfaceConfigJSON eth0 \
    '{"name" : "eth0","dhcp" : false,"ip_address" : "10.0.0.77","netmask" : "255.0.0.0","gateway_ip" : "10.0.0.1"}'
fnService applyNewConfiguration
fnSay 'Somebody gives eth0 another address; the panel looks every ten seconds'
sleep 10
fnStage interfaces 'It shows the address of the platform service'

fnFinger tap =10.0.0.77
fnFinger await NetworkSettingsDialog
fnStage network-dialog 'A tap on the address opens the settings of that interface'
fnFinger type ipAddress_LineEdit 172.16.1.5
if [[ -n ${QT_IM_MODULE:-} ]]; then
    fnStage keyboard 'An on-screen keyboard comes with the keys for an address; the dialog stays above it'
fi
fnFinger tap applyButton
fnFinger await =172.16.1.5
fnFinger tap closeButton
fnStage network-static 'Apply sends another address; the panel shows it at once'

fnFinger tap =172.16.1.5
fnFinger tap useDHCP_comboBox
fnStage network-choice 'Or the address shall come by DHCP'
fnFinger tap =Yes
fnFinger tap applyButton
fnFinger tap closeButton
fnFinger await =DHCP
fnStage network-dhcp 'There is no lease yet'
fnFinger await =192.168.1.20
fnStage network-lease 'A lease has come'

fnSend w1
sleep 1.5 # the hand disappears after one second and is back after two
fnStage wink 'Wink: an operator finds the device by its blinking hand'
fnStage wink-blink 'It blinks once a second'
fnSend w0
fnStage wink-off 'Wink is off'

fnFinger reach appnameForm_Label
fnSend n3 'a000Mixer line' 's000Running'
fnStage application 'The main application runs; the rows are scrolled to it by touch'

fnSend 'a001Förderband Süd' 's001Stop' 'a002Not shown: the last index has no row'
fnFinger reach '=Förderband Süd'
fnStage applications 'Three applications'

fnSend 's000Exception' 's001Running'
fnStage status 'Their status changes'

fnFinger tap systemTimeForm_Label
fnFinger await ntpStatus_Label 'Last sync:64 secs ago'
fnFinger await timezone_ComboBox Europe/Rome
fnStage datetime-dialog 'A tap on the clock opens its settings, with what the device has set'
fnFinger open timezone_ComboBox
fnStage datetime-zones 'It has all time zones'
fnFinger tap =Europe/Rome
fnFinger type timezone_ComboBox Tokyo
fnStage datetime-found 'A part of a name finds the zones that contain it'
fnFinger tap =Asia/Tokyo
fnFinger tap applyButton
fnAwait grep -q Asia/Tokyo /etc/timezone
fnFinger tap autoUpdate_CheckBox
fnStage datetime-ntp 'The time shall come from a server'
fnFinger tap applyButton
fnAwait grep -q 'start("ntpd")' "$calls"
fnFinger tap autoUpdate_CheckBox
fnFinger tap applyButton
fnFinger tap closeButton
fnStage datetime-zone 'The clock shows the time of the other zone; NTP is off again'
fnSay "The device's files: /etc/localtime is $(readlink /etc/localtime), /etc/timezone holds $(</etc/timezone)"
grep ServiceManager "$calls"

fnFinger tap toolButton
fnAwait test -e /tmp/kadconfig-app.log
fnSay 'The settings button has started the configuration application'

fnSend n20 'a018A very long application name, longer than the screen of the panel is wide'
fnFinger reach systemTimeForm_Label
fnStage scrolled 'Twenty applications, scrolled by touch'

fnSend n3
[[ -n $pictures ]] || fnPrompt
[[ -z $pictures ]] || fnSend quit
read -r farewell <&"$output" || fnFail 'the panel ends without a farewell'
wait "$panel" && status=0 || status=$?
fnSay "The panel writes \"$farewell\" and ends with status $status"
echo 'Its log:'
sed 's/^/  /' "$log"
echo 'The calls that the platform service received:'
sort "$calls" | uniq -c
