#!/bin/bash
# Runs a command on a simulated device: network interfaces, the platform's files and tools, and a system bus. To be
# run in the sandbox, with which all of it ends.
#
#   device.sh [--interfaces N] [--screen WIDTHxHEIGHT] [--service BUILD_DIR] -- COMMAND [ARGUMENT]...
#
# --interfaces  how many: eth0, eth1 and so on; an even number, 2 if not given
# --screen      also a virtual X display of that size
# --service     also the simulated platform service of that build, which logs to /tmp/ovik-simulator.log and grants a
#               lease after five seconds
set -euo pipefail

fnUsage() {
    sed -n '5,10s/^# \?//p' "$0" >&2
    exit 2
}

fnAwait() { # WHAT COMMAND...: waits up to 20 seconds until the command succeeds
    local i
    for ((i = 0; i < 200; i++)); do
        ! "${@:2}" || return 0
        sleep 0.1
    done
    echo "device.sh: $1 does not start" >&2
    exit 1
}

interfaces=2
screen=
build=
while [[ ${1:-} == --* && $1 != -- ]]; do
    [[ -n ${2:-} ]] || fnUsage
    case $1 in
    --interfaces) interfaces=$2 ;;
    --screen) screen=$2 ;;
    --service) build=$2 ;;
    *) fnUsage ;;
    esac
    shift 2
done
[[ ${1:-} == -- && -n ${2:-} ]] || fnUsage
shift

"$(dirname "$0")/device/install.sh"
for ((i = 0; i < interfaces; i += 2)); do
    ip link add "eth$i" type veth peer name "eth$((i + 1))"
done
dbus-daemon --session --nofork --address=unix:path=/tmp/system-bus 2>/tmp/bus.log &
fnAwait 'the message bus' test -S /tmp/system-bus
export DBUS_SYSTEM_BUS_ADDRESS=unix:path=/tmp/system-bus
if [[ -n $build ]]; then
    service=$build/launchers/ovik-simulator # of a build for another processor
    [[ -x $service ]] || service=$build/simulator/ovik-simulator
    "$service" --system --lease-delay 5000 >/tmp/ovik-simulator.log &
    fnAwait 'the platform service' grep -qs ready /tmp/ovik-simulator.log
fi
if [[ -n $screen ]]; then
    Xvfb -screen 0 "${screen}x24" -noreset -nolisten tcp -displayfd 3 3>/tmp/display 2>/tmp/xvfb.log &
    fnAwait 'the X server' test -s /tmp/display
    DISPLAY=:$(</tmp/display)
    export DISPLAY
fi
exec "$@"
