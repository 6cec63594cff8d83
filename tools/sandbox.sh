#!/bin/bash
# Runs a command in mount, network and process namespaces of its own: what it writes to /etc, /usr and /tmp is gone
# afterwards, it sees no bus and no network of the host, it cannot set the clock, and what it starts ends with it.
# Needs root or user namespaces.
#
#   sandbox.sh [--keep DIR]... -- COMMAND [ARGUMENT]...
#
# --keep DIR  what the command writes below DIR is kept, and sockets in it can be reached, wherever DIR is; the
#             project's own folder is always kept
set -euo pipefail

fnEnter() {
    local options=(--mount --net --pid --fork --kill-child --mount-proc)
    [[ $(id -u) == 0 ]] || options+=(--user --map-root-user)
    exec setpriv --pdeathsig KILL unshare "${options[@]}" "$0" --inside "$@"
}

fnKeep() { # DIR
    local dir system
    dir=$(realpath "$1")
    for system in /etc /tmp /usr; do
        if [[ $system/ == "${dir%/}"/* ]]; then
            echo "sandbox.sh: keeping $dir would open $system to the command" >&2
            exit 2
        fi
    done
    kept+=("$dir")
}

fnOverlay() { # DIR
    local dir=$1 work=/dev/shm/overlay$1
    mkdir -p "$work/upper" "$work/work"
    chmod --reference="$dir" "$work/upper"
    # In a user namespace the files of the host's root could not be written: copies of ours can.
    [[ $dir != /etc || -O /etc/passwd ]] || cp -r --preserve=mode,links /etc/. "$work/upper" 2>/dev/null || true
    mount -t overlay overlay -o "lowerdir=$dir,upperdir=$work/upper,workdir=$work/work" "$dir"
}

[[ ${1:-} == --inside ]] || fnEnter "$@"
shift

kept=("$(realpath "$(dirname "$0")/..")")
while [[ ${1:-} == --keep ]]; do
    fnKeep "$2"
    shift 2
done
[[ ${1:-} == -- ]] || { echo "usage: sandbox.sh [--keep DIR]... -- COMMAND [ARGUMENT]..." >&2; exit 2; }
shift

directory=$PWD
mount -t tmpfs tmpfs /dev/shm
for i in "${!kept[@]}"; do
    mkdir -p "/dev/shm/keep/$i"
    mount --bind "${kept[$i]}" "/dev/shm/keep/$i"
done
fnOverlay /etc
fnOverlay /usr
fnOverlay /usr/bin
mount -t tmpfs -o mode=1777 tmpfs /tmp
for i in "${!kept[@]}"; do
    mkdir -p "${kept[$i]}"
    mount --bind "/dev/shm/keep/$i" "${kept[$i]}"
done
# No bus of the host; and X servers keep their keymaps by display number, which every sandbox counts from 0.
for dir in /run/dbus /var/lib/xkb; do
    [[ ! -d $dir ]] || mount -t tmpfs tmpfs "$dir"
done
ip link set lo up
cd "$directory"

export XDG_RUNTIME_DIR=/dev/shm/runtime
mkdir -m 700 "$XDG_RUNTIME_DIR"
export DBUS_SYSTEM_BUS_ADDRESS=${SANDBOX_SYSTEM_BUS:-unix:path=/nonexistent/system}
export DBUS_SESSION_BUS_ADDRESS=${SANDBOX_SESSION_BUS:-unix:path=/nonexistent/session}
# Not in place of this process: the first one in a namespace cannot die by abort().
setpriv --bounding-set=-sys_time,-sys_boot,-sys_module -- "$@"
