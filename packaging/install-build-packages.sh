#!/bin/bash
# Installs what building, testing and showing the panel needs on Debian 12; does nothing if all of it is there.
#
#   install-build-packages.sh [--keyboard]
#
# --keyboard  also an on-screen keyboard, for the demo
set -euo pipefail

packages=(
    build-essential clang cmake libclang-rt-14-dev llvm ninja-build
    qtbase5-dev qtbase5-dev-tools dbus-daemon libglib2.0-bin
    fonts-liberation fonts-dejavu-core imagemagick openbox
    iproute2 python3 strace tzdata util-linux x11-utils xdotool xserver-xephyr xvfb
)
[[ ${1:-} != --keyboard ]] || packages+=(
    qtvirtualkeyboard-plugin qml-module-qtquick2 qml-module-qtquick-layouts qml-module-qtquick-window2
    qml-module-qt-labs-folderlistmodel xcompmgr
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null | grep -q '^ii' || missing+=("$package")
done
((${#missing[@]})) || exit 0

root=()
[[ $(id -u) == 0 ]] || root=(sudo)
"${root[@]}" apt-get update -qq
"${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
