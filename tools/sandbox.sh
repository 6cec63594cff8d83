#!/bin/bash
# Runs a command in mount, network and process namespaces of its own. What it writes to /etc, /usr and /tmp is
# discarded, it reaches no bus, no network and no settings of the user, it cannot set the clock, and the processes that
# it starts end with it. Needs root, or a system that lets users create namespaces.
#
#   sandbox.sh [--keep DIR]... -- COMMAND [ARGUMENT]...
#   sandbox.sh --check
#
# --keep DIR  keeps what the command writes below DIR, and lets it use sockets there; the project's own folder is always
#             kept
# --check     runs nothing; fails with one line if the system allows no sandbox
set -euo pipefail

fnFail() {
    echo "sandbox.sh: $*" >&2
    exit 2
}

fnKeep() { # DIR
    local dir system
    dir=$(realpath "$1")
    for system in /dev/shm /etc /tmp /usr; do
        [[ $system/ != "${dir%/}"/* ]] || fnFail "$dir cannot be kept: that would open $system to the command"
    done
    [[ $dir/ != /tmp/tarnixUI/* ]] || fnFail "move $dir: /tmp/tarnixUI is the name of the panel's pipe"
    [[ $dir != /dev/shm/* ]] || fnFail "move $dir: the sandbox has a /dev/shm of its own"
    kept+=("$dir")
}

fnRefuse() {
    local remedy='be root' name value refusing
    [[ $(id -u) != 0 ]] || remedy='start the container with --privileged'
    while read -r name refusing value; do
        [[ $(cat "/proc/sys/${name//.//}" 2>/dev/null) == "$refusing" ]] || continue
        remedy+=", or as root: sysctl -w $name=$value"
    done <<<'user.max_user_namespaces 0 10000
kernel.unprivileged_userns_clone 0 1
kernel.apparmor_restrict_unprivileged_userns 1 0'
    fnFail "this system allows no mount, network and process namespaces, and nothing runs without them; $remedy"
}

fnChoose() { # sets namespaces to the options of unshare that work here
    local mapping
    for mapping in '' --map-root-user; do
        namespaces=(${mapping:+"$mapping"} --mount --net --pid --fork --kill-child --mount-proc)
        ! unshare "${namespaces[@]}" mount -t overlay -o lowerdir=/etc:/usr overlay /tmp 2>/dev/null || return 0
    done
    fnRefuse
}

fnOverlay() { # DIR
    local dir=$1 work=/dev/shm/overlay$1
    mkdir -p "$work/upper" "$work/work"
    chmod --reference="$dir" "$work/upper"
    if [[ ! -O $dir ]]; then
        # In a user namespace, folders of the machine's root cannot be written to; those in the upper layer can.
        case $dir in
        /etc) cp -r --preserve=mode,links /etc/. "$work/upper" 2>/dev/null || true ;;
        /usr) mkdir -p "$work/upper/share"/{dbus-1/interfaces,man/man1,zoneinfo} ;;
        esac
    fi
    mount -t overlay overlay -o "lowerdir=$dir,upperdir=$work/upper,workdir=$work/work" "$dir"
}

fnMounts() {
    local i dir directory=$PWD
    mount -t tmpfs tmpfs /dev/shm
    for i in "${!kept[@]}"; do
        mkdir -p "/dev/shm/keep/$i"
        mount --rbind "${kept[$i]}" "/dev/shm/keep/$i"
    done
    fnOverlay /etc
    fnOverlay /usr
    fnOverlay /usr/bin
    mount -t tmpfs -o mode=1777 tmpfs /tmp
    for i in "${!kept[@]}"; do
        mkdir -p "${kept[$i]}"
        mount --rbind "/dev/shm/keep/$i" "${kept[$i]}"
    done
    # No bus of the machine; and X servers keep their keymaps by display number, which every sandbox counts from 0.
    for dir in /run/dbus /var/lib/xkb; do
        [[ ! -d $dir ]] || mount -t tmpfs tmpfs "$dir"
    done
    cd "$directory"
}

fnEnvironment() {
    umask 022
    unset LANGUAGE TMPDIR TZ XDG_CACHE_HOME XDG_CONFIG_HOME XDG_CURRENT_DESKTOP XDG_DATA_HOME \
        QT_AUTO_SCREEN_SCALE_FACTOR QT_FONT_DPI QT_IM_MODULE QT_QPA_PLATFORMTHEME QT_SCALE_FACTOR QT_STYLE_OVERRIDE
    export HOME=/dev/shm/home XDG_RUNTIME_DIR=/dev/shm/runtime
    mkdir -m 700 "$HOME" "$XDG_RUNTIME_DIR"
    export LC_ALL=C.UTF-8 PATH=$PATH:/usr/sbin:/sbin
    export DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nonexistent/system DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent/session
}

inside=
[[ ${1:-} != --inside ]] || { inside=yes && shift; }
arguments=("$@")
kept=()
fnKeep "$(dirname "$0")/.."
while [[ ${1:-} == --keep && -n ${2:-} ]]; do
    fnKeep "$2"
    shift 2
done
[[ ${1:-} == --check || (${1:-} == -- && -n ${2:-}) ]] || { sed -n '6,7s/^# *//p' "$0" >&2 && exit 2; }
if [[ -z $inside ]]; then
    fnChoose
    [[ $1 != --check ]] || exit 0
    exec setpriv --pdeathsig KILL unshare "${namespaces[@]}" "$0" --inside "${arguments[@]}"
fi
shift
fnMounts
fnEnvironment
ip link set lo up
# No exec: abort() does not end the first process of a namespace.
setpriv --bounding-set=-sys_time,-sys_boot,-sys_module -- "$@"
