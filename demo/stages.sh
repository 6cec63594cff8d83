# shellcheck shell=bash
# The steps of a tour, on a simulated or an emulated device. Takes --pictures DIR from the arguments of the script that
# sources it, which defines
#
#   fnWrite LINE        passes the line to the panel; fails when the panel has ended
#   fnPicture FILE      writes what the screen shows
#   fnFinger VERB ...   does what tools/finger.py does
#   fnOnDevice COMMAND  runs a command of one word on the device
#   fnService MEMBER ARGUMENT...  calls the platform service as another client of it
stage=0
pictures=
if [[ ${1:-} == --pictures ]]; then
    pictures=$2
    shift 2
fi

fnSay() { printf '\n== %s\n' "$*"; }

fnStage() { # NAME TEXT: waits until the panel has settled, and shows it
    fnOnDevice 'sleep 1'
    stage=$((stage + 1))
    fnSay "$2"
    [[ -z $pictures ]] || fnPicture "$(printf '%s/%02d-%s.png' "$pictures" "$stage" "$1")"
    [[ -n $pictures ]] || sleep 2
}

fnSend() { # LINE...
    local line
    for line in "$@"; do
        printf 'runtime> %s\n' "$line"
        fnWrite "$line"
    done
}

fnPrompt() {
    local line
    fnSay 'Your turn: lines are passed to the panel as they are; "quit" ends it.'
    echo 'Try dNAME, vVERSION, nCOUNT, aINDEXNAME and sINDEXTEXT with a three-digit index, w1, w0.'
    while IFS= read -r -p 'runtime> ' line || [[ -n $line ]]; do
        fnWrite "$line" || return 0
        [[ $line != quit ]] || return 0
    done
    fnSend quit
}

fnAwaitOnDevice() { # COMMAND: until it succeeds on the device
    local i
    for ((i = 0; i < 300; i++)); do
        ! fnOnDevice "$1" >/dev/null || return 0
        fnOnDevice 'sleep 0.1'
    done
    fnFail "timed out: $1"
}
