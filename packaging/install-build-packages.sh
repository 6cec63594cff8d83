#!/bin/bash
# Installs what building, testing and showing the panel needs on Debian 12 and 13; does nothing if all of it is there.
#
#   install-build-packages.sh [--aarch64 | --lint]
#
# --aarch64   also what building for AArch64, running it here and making an emulated device needs; lets the machine have
#             packages of arm64
# --lint      also what checks the style, and what the benchmarks are built with
set -euo pipefail

# No name carries a version: the same list serves every release.
packages=(
    build-essential clang cmake file libclang-rt-dev llvm ninja-build
    qtbase5-dev qtbase5-dev-tools qtbase5-private-dev qt6-base-dev qt6-base-private-dev
    dbus-daemon dbus-system-bus-common libglib2.0-bin
    fonts-liberation fonts-dejavu-core imagemagick
    cage matchbox-window-manager openbox qt6-wayland qtwayland5 tigervnc-viewer weston xwayland
    iproute2 libfaketime mount python3 python3-gi strace tzdata util-linux valgrind x11-utils xdotool xserver-xephyr xvfb
)
[[ ${1:-} != --aarch64 ]] || packages+=(
    crossbuild-essential-arm64 qemu-user qtbase5-dev:arm64 qtbase5-private-dev:arm64
    cpio e2fsprogs kmod mmdebstrap qemu-system-arm zstd
)

[[ ${1:-} != --lint ]] || packages+=(
    clang-format clang-tidy flake8 git jq libbenchmark-dev nlohmann-json3-dev rapidjson-dev shellcheck
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null | grep -q '^ii' || missing+=("$package")
done
((${#missing[@]})) || exit 0

root=()
if [[ $(id -u) != 0 ]]; then
    command -v sudo >/dev/null || { echo "${0##*/}: have root install ${missing[*]}" >&2 && exit 1; }
    root=(sudo)
fi
[[ ${1:-} != --aarch64 ]] || "${root[@]}" dpkg --add-architecture arm64
"${root[@]}" apt-get update -qq
"${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
