#!/bin/bash
# Makes the Debian package, installs it, starts the program and removes the package. To be run in the sandbox, where
# nothing of it lasts.
#
#   test-package.sh BUILD_DIR [EMULATOR]
set -euo pipefail
build=$1
emulator=("${@:2}")
lint=$(realpath "$(dirname "$0")/../tools/lint-docs.py")
cd "$(mktemp -d)"

fnExpect() { # WHAT ACTUAL EXPECTED
    [[ $2 != "$3" ]] || return 0
    printf '%s is\n%s\ninstead of\n%s\n' "$@" >&2
    exit 1
}

# A database of its own that knows the machine's packages, so that dependencies count and no trigger leaves the sandbox.
mkdir -p database/updates
cp -r /var/lib/dpkg/{info,status} database
[[ ! -e /var/lib/dpkg/arch ]] || cp /var/lib/dpkg/arch database
rm -f /etc/dpkg/dpkg.cfg.d/*
# dpkg renames the package's folder there, which an overlay in a user namespace refuses.
mount -t tmpfs -o mode=755 tmpfs /usr/share/doc
mkdir -p /usr/share/dbus-1/interfaces # may have come with the machine's packages or not
touch /usr/share/dbus-1/interfaces/other.xml
fnDpkg() { dpkg --admindir="$PWD/database" --log="$PWD/dpkg.log" --no-triggers "$@"; }
# The paths of the package that are on the machine.
fnFiles() { dpkg-deb --fsys-tarfile "$package" | tar -t | sed 's/^.//' | { xargs ls -d 2>/dev/null || true; } | sort; }

cpack --config "$build/CPackConfig.cmake" -B "$PWD"
package=$(echo ./tarnixui_*.deb)
architecture=$(dpkg --print-architecture)
((${#emulator[@]} == 0)) || architecture=arm64
fnExpect 'The architecture' "$(dpkg-deb -f "$package" Architecture)" "$architecture"
# Debian 13 ends some names with t64.
depends=$(dpkg-deb -f "$package" Depends | tr ', ' '\n' |
    sed -n 's/^\(libqt[56][a-z]*[56]\)\(a\|t64\)\?$/\1/p' | sort | paste -sd ' ')
version=$(sed -n 's/^TARNIXUI_QT:STRING=//p' "$build/CMakeCache.txt")
needed=$(printf "libqt$version%s$version " core dbus gui network widgets)
fnExpect 'What it needs of Qt' "$depends " "$needed"

fnFiles >before
fnDpkg --install "$package"
fnFiles >after
fnExpect 'What the package brings' "$(comm -13 before after | xargs stat -c '%A %U:%G %n')" \
"-rwxr-xr-x root:root /usr/bin/tarnixUI
-rw-r--r-- root:root /usr/share/dbus-1/interfaces/com.quen.OVIK.xml
drwxr-xr-x root:root /usr/share/doc/tarnixui/
-rw-r--r-- root:root /usr/share/doc/tarnixui/changelog.Debian.gz
-rw-r--r-- root:root /usr/share/doc/tarnixui/compatibility.md
-rw-r--r-- root:root /usr/share/doc/tarnixui/copyright
-rw-r--r-- root:root /usr/share/doc/tarnixui/date-and-time.md
-rw-r--r-- root:root /usr/share/doc/tarnixui/device.md
drwxr-xr-x root:root /usr/share/doc/tarnixui/examples/
-rw-r--r-- root:root /usr/share/doc/tarnixui/examples/getNTPStatus.sh
-rwxr-xr-x root:root /usr/share/doc/tarnixui/examples/ovik-service.py
-rwxr-xr-x root:root /usr/share/doc/tarnixui/examples/runtime.py
-rw-r--r-- root:root /usr/share/doc/tarnixui/examples/setNTPSettings.sh
-rw-r--r-- root:root /usr/share/doc/tarnixui/examples/setTimeZone.sh
-rw-r--r-- root:root /usr/share/doc/tarnixui/integrating.md
-rw-r--r-- root:root /usr/share/doc/tarnixui/network-settings.md
drwxr-xr-x root:root /usr/share/doc/tarnixui/pictures/
-rw-r--r-- root:root /usr/share/doc/tarnixui/pictures/datetime-dialog.png
-rw-r--r-- root:root /usr/share/doc/tarnixui/pictures/network-dialog.png
-rw-r--r-- root:root /usr/share/doc/tarnixui/platform-service.md
-rw-r--r-- root:root /usr/share/doc/tarnixui/runtime-protocol.md
-rw-r--r-- root:root /usr/share/man/man1/tarnixUI.1.gz"
"$lint" /usr/share/doc/tarnixui
fnExpect 'The version in packaging/changelog.Debian' \
    "$(zcat /usr/share/doc/tarnixui/changelog.Debian.gz | dpkg-parsechangelog -l - -S Version)" \
    "$(dpkg-deb -f "$package" Version)"

fnExpect 'What the program writes' "$(echo quit | QT_QPA_PLATFORM=offscreen "${emulator[@]}" /usr/bin/tarnixUI)" \
    $'First message\n> Good bye!'

fnDpkg --purge tarnixui
fnFiles | diff before -
