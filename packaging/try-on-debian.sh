#!/bin/bash
# Tries both commands of the README on a bare Debian: as root in a clone below /tmp, then as a user without sudo in a
# folder whose name has a blank and a letter beyond ASCII. Only what is committed counts.
#
#   try-on-debian.sh 12|13
#
# Needs root, mmdebstrap, Debian's archive, and 10 GB in TMPDIR or /var/tmp; leaves nothing on the machine.
set -euo pipefail

fnDevices() { # those that every user may use, none that reaches the machine's disks
    local name major minor
    mount -t tmpfs -o mode=755 tmpfs dev
    mkdir -m 1777 dev/shm
    mkdir dev/net dev/pts
    mount -t devpts -o newinstance,ptmxmode=666 devpts dev/pts
    while read -r name major minor; do
        mknod -m 666 "dev/$name" c "$major" "$minor"
    done <<<'full 1 7
net/tun 10 200
null 1 3
random 1 8
tty 5 0
urandom 1 9
zero 1 5'
    ln -s pts/ptmx dev/ptmx
    ln -s /proc/self/fd dev/fd
    ln -s /proc/self/fd/0 dev/stdin
    ln -s /proc/self/fd/1 dev/stdout
    ln -s /proc/self/fd/2 dev/stderr
}

# A program in a chroot cannot create user namespaces, so the bare system becomes the root of this mount namespace.
fnEnter() { # ROOT COMMAND...
    mount --bind "$1" "$1"
    cd "$1"
    mount -t proc proc proc
    mount -t sysfs -o ro sysfs sys
    fnDevices
    mkdir -p .host
    pivot_root . .host
    cd /
    umount -l .host
    exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
        setpriv --bounding-set=-sys_time,-sys_boot,-sys_module,-sys_rawio -- "${@:2}"
}

fnInside() { # COMMAND...: runs it in the bare system
    setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child "$0" --inside "$root" "$@"
}

fnTry() { # USER FOLDER: clones into the folder and runs the commands of the README there
    echo "== Debian $suite, $1 in $2"
    git clone --quiet "$source" "$root/$2"
    fnInside chown -R "$1:" "$2"
    # shellcheck disable=SC2016 # expanded inside
    fnInside su --login --command \
        'cd "$0" && ./demo.sh --headless ~/pictures && ls ~/pictures && ./test.sh' "$1" "$2"
}

case ${1:-} in
--inside) fnEnter "${@:2}" ;;
12) suite=bookworm ;;
13) suite=trixie ;;
*)
    sed -n '2,7s/^# \?//p' "$0" >&2
    exit 2
    ;;
esac
source=$(realpath "$(dirname "$0")/..")
work=$(TMPDIR=${TMPDIR:-/var/tmp} mktemp -d)
chmod 755 "$work"
trap 'rm -rf --one-file-system "$work"' EXIT
if (($(df --output=avail -BG "$work" | tail -n 1 | tr -dc 0-9) < 10)); then
    echo "try-on-debian.sh: less than 10 GB in ${work%/*}; set TMPDIR" >&2
    exit 1
fi
root=$work/root
mmdebstrap --quiet --variant=minbase "$suite" "$root"
cp /etc/resolv.conf /etc/hosts "$root/etc"
fnTry root /tmp/panel
rm -rf "$root/tmp/panel"
fnInside useradd --create-home --shell /bin/bash tester
fnTry tester '/home/tester/Frühe Versuche/panel'
