#!/bin/bash
# Puts the platform's tools and files into place. Only in the sandbox.
set -euo pipefail

if ! mountpoint -q /usr/bin || ! mountpoint -q /etc; then
    echo 'install.sh: this is no sandbox' >&2
    exit 1
fi
install -m 755 "$(dirname "$0")"/{kadconfig-app,kadconfig-gen-timezones.sh,kadconfig-gen-ntp-conf.sh,ntpq} /usr/bin
if [[ ! -d /usr/share/zoneinfo/posix ]]; then
    mkdir /usr/share/zoneinfo/posix
    cp -rs /usr/share/zoneinfo/[A-Z]* /usr/share/zoneinfo/posix
fi
ln -sf /usr/share/zoneinfo/posix/Europe/Rome /etc/localtime
echo Europe/Rome >/etc/timezone
chmod 644 /etc/timezone
mkdir -p /etc/kadconfig
echo '{"ntp" : {"server" : "192.168.1.1"}}' >/etc/kadconfig/datetime.json
echo 'server 127.127.1.0' >/etc/ntp.conf
rm -f /etc/kadconfig-ntp.conf
