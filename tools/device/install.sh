#!/bin/bash
# Puts the platform's tools and files into place: in the sandbox, or below the root of an image.
#
#   install.sh [ROOT]
set -euo pipefail

root=${1:-}
if [[ -z $root ]] && { ! mountpoint -q /usr/bin || ! mountpoint -q /etc; }; then
    echo 'install.sh: this is no sandbox' >&2
    exit 1
fi
install -m 755 "$(dirname "$0")"/{kadconfig-app,kadconfig-gen-timezones.sh,kadconfig-gen-ntp-conf.sh,ntpq} "$root/usr/bin"
zones=$root/usr/share/zoneinfo
if [[ ! -d $zones/posix ]]; then
    mkdir "$zones/posix"
    cp -r"$([[ -z $root ]] && echo s || echo l)" "$zones"/[A-Z]* "$zones/posix"
fi
ln -sf /usr/share/zoneinfo/posix/Europe/Rome "$root/etc/localtime"
echo Europe/Rome >"$root/etc/timezone"
chmod 644 "$root/etc/timezone"
mkdir -p "$root/etc/kadconfig"
echo '{"ntp" : {"server" : "192.168.1.1"}}' >"$root/etc/kadconfig/datetime.json"
echo 'server 127.127.1.0' >"$root/etc/ntp.conf"
rm -f "$root/etc/kadconfig-ntp.conf"
