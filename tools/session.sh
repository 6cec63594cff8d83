#!/bin/bash
# Runs what stands between the panel and an X display: nothing, a window manager, a compositor in a window, or a viewer
# of the frame buffer that Qt keeps for VNC. Writes the line "ready" when it is there.
#
#   session.sh x11|openbox|matchbox|weston-desktop|weston-kiosk|cage|vnc
#
# What it has started ends with it. Needs DISPLAY; Wayland clients connect to wayland-0, the viewer to port 5900.
set -euo pipefail
width=$(xwininfo -root | sed -n 's/^ *Width: //p')
height=$(xwininfo -root | sed -n 's/^ *Height: //p')
socket=$XDG_RUNTIME_DIR/wayland-0
rm -f "$socket"*

fnAwait() { # COMMAND...: until it succeeds or what was started has ended
    until "$@"; do
        if ! kill -0 $! 2>/dev/null; then
            cat /tmp/session.log >&2
            exit 1
        fi
        sleep 0.1
    done
}

fnStart() { # COMMAND...: beside this script, and no longer than it
    setpriv --pdeathsig KILL "$@" >/tmp/session.log 2>&1 &
}

fnOpenbox() { # runs a command when it manages windows: before, it may miss one that is shown
    rm -f /tmp/managed
    fnStart openbox --sm-disable --startup 'touch /tmp/managed'
    fnAwait test -e /tmp/managed
}

fnManages() { xprop -root _NET_SHOWING_DESKTOP 2>/dev/null | grep -q '='; } # set last

fnWindow() { xwininfo -root -children 2>/dev/null | sed -n 's/^ *\(0x[0-9a-f]*\) .*/\1/p'; }

fnShowsWindow() { [[ -n $(fnWindow) ]]; }

fnFocus() { # gives the compositor's window the whole screen and the keyboard, as a window manager would
    local window
    fnAwait fnShowsWindow
    window=$(fnWindow)
    xdotool windowmove "$window" 0 0 windowsize "$window" "$width" "$height" windowfocus "$window"
}

fnShowsDesktop() { ! import -window root -crop 1x1+0+0 -depth 8 txt:- | grep -q '(0,0,0)'; }

fnWeston() { # SHELL
    printf '[core]\nidle-time=0\nuse-pixman=true\n[shell]\npanel-position=none\nlocking=false\n' \
        >/tmp/weston.ini
    fnStart weston --backend=x11-backend.so --shell="$1" --config=/tmp/weston.ini --width="$width" --height="$height" \
        --socket=wayland-0
    fnAwait test -S "$socket"
    fnFocus
    [[ $1 != desktop-shell.so ]] || fnAwait fnShowsDesktop
}

case $1 in
x11) ;;
openbox) fnOpenbox ;;
matchbox)
    fnStart matchbox-window-manager -use_titlebar no
    fnAwait fnManages
    ;;
weston-desktop) fnWeston desktop-shell.so ;;
weston-kiosk) fnWeston kiosk-shell.so ;;
cage)
    export WLR_BACKENDS=x11 WLR_RENDERER=pixman
    fnStart unshare --user --map-user=1000 cage -- sleep infinity # never runs as root
    fnAwait test -S "$socket"
    fnFocus
    ;;
vnc)
    fnOpenbox # newer viewers fill the screen only with a window manager's help
    fnStart xtigervncviewer -FullScreen=1 -MenuKey= localhost:5900
    fnAwait xdotool search --onlyvisible --name TigerVNC >/dev/null
    ;;
esac
echo ready
wait
