#!/bin/bash
# Makes the image of the emulated device from what has been built and from Debian's packages for arm64, and prints its
# folder: kernel, initrd, disk.img. Does nothing if it is there already.
#
#   image.sh [--build | --eglfs | --benchmark]
#
# --build      builds what goes into it before
# --eglfs      with the drivers that eglfs needs; they make it twice as large
# --benchmark  with the benchmarks that preset aarch64-benchmark has built, and what they need
#
# Debian's packages are kept in build/device as they were when they were fetched; remove that folder to have newer ones.
# A new image takes the place of those of its kind that are older than an hour.
# The same packages and programs make the same kernel, initrd and files; the times of inodes on the disk differ.
set -euo pipefail

fnSay() { printf 'image.sh: %s\n' "$*" >&2; }

fnHash() { sha256sum | cut -c 1-16; }

# What the programs need, as our own packages say, and what else a device has.
fnPackages() {
    dpkg-deb -f "$build"/aarch64-release/tarnixui_*_arm64.deb Depends | sed 's/ *([^)]*)//g; s/ *|[^,]*//g; s/, */\n/g'
    printf '%s\n' bash busybox-static dbus-bin dbus-daemon dbus-system-bus-common fontconfig-config fonts-liberation libqt5xml5 tzdata udev
    [[ $kind != benchmark ]] || echo python3
    [[ $kind != eglfs ]] || printf '%s\n' libegl-mesa0 libgbm1 libgl1-mesa-dri
}

fnBuild() {
    fnSay 'builds panel, keypad and simulated service for arm64'
    cd ..
    cmake --preset aarch64-release >/dev/null
    cmake --build --preset aarch64-release >&2
    cpack --config build/aarch64-release/CPackConfig.cmake -B build/aarch64-release >/dev/null
    cmake --preset aarch64 >/dev/null
    cmake --build --preset aarch64 --target ovik-simulator probe agent >&2
    cd device
}

fnFetchKernel() { # DIR: called by mmdebstrap, whose apt knows arm64
    local name
    export APT_CONFIG=$MMDEBSTRAP_APT_CONFIG
    name=$(apt-cache depends linux-image-arm64 | sed -n 's/^ *Depends: //p')
    cd "$1"
    apt-get -qq download "$name"
    dpkg-deb -x ./linux-image-*.deb kernel
    [[ -e kernel/lib ]] || ln -s usr/lib kernel # since Debian 13
    rm linux-image-*.deb
}

# Keeps of the kernel's modules those that the emulated device has hardware for.
fnModules() { # DIR
    local from=$1/kernel to=$1/modules version file
    version=$(basename "$from"/lib/modules/*)
    mkdir -p "$to/lib/modules/$version"
    depmod -b "$from" "$version"
    printf '%s\n' virtio_pci virtio_blk crc32c_generic ext4 virtio_console virtio_input evdev uinput virtio-gpu cirrus dummy \
        >"$1/modules.list"
    while read -r file; do
        modprobe -d "$from" -S "$version" -D "$file" | sed -n 's/^insmod \(.*\.ko[.a-z]*\).*/\1/p'
    done <"$1/modules.list" | sort -u | while read -r file; do
        install -D -m 644 "$file" "$to${file#"$from"}"
    done
    find "$to" -name '*.xz' -exec unxz {} +
    cp "$from/lib/modules/$version"/modules.builtin* "$from/lib/modules/$version/modules.order" "$to/lib/modules/$version"
    depmod -b "$to" "$version"
    mv "$from"/boot/vmlinuz-* "$1/vmlinuz"
    rm -r "$from"
}

# No scripts of packages run here: what they would do and the device needs, this does.
fnFinish() { # ROOT
    local root=$1 file
    (cd "$root"
    rm -rf usr/share/{doc,man,locale,info,bug,lintian,perl5,X11/locale} usr/lib/aarch64-linux-gnu/{perl*,gconv} \
        boot etc/{hostname,resolv.conf} var/{cache,log,lib/{apt,dpkg}}
    [[ $kind == eglfs ]] || rm -rf usr/lib/aarch64-linux-gnu/{dri,libLLVM*,libgallium*,libz3.so*,libvulkan*})
    mkdir -p "$root"/{dev,proc,sys,run,tmp,root,var/log} "$root/etc/fonts/conf.d"
    for file in "$root"/usr/share/fontconfig/conf.avail/{10-hinting-slight,10-scale*,11-*,20-*,30-*,40-non*,45-*,49-*,51-*,60-*,65-*,69-*,80-*,90-*}.conf; do
        [[ ! -e $file ]] || ln -sf "/usr/share/fontconfig/conf.avail/${file##*/}" "$root/etc/fonts/conf.d"
    done
    printf '%s\n' root:x:0:0::/root:/bin/sh messagebus:x:100:100::/run:/bin/false ovik:x:101:101::/run:/bin/false >"$root/etc/passwd"
    printf '%s\n' root:x:0: messagebus:x:100: ovik:x:101: tty:x:5: input:x:102: video:x:44: kmem:x:15: disk:x:6: >"$root/etc/group"
    ln -sf /run/machine-id "$root/etc/machine-id"
    for file in $(qemu-aarch64 "$root/usr/bin/busybox" --list); do
        [[ -e $root/usr/bin/$file || -e $root/usr/sbin/$file ]] || ln -s busybox "$root/usr/bin/$file"
    done
    ln -sf ../bin/busybox "$root/usr/sbin/init"
}

fnBase() { # DIR: Debian's part
    local packages
    packages=$(fnPackages | paste -sd ,)
    fnSay "fetches Debian's packages and kernel for arm64"
    TAR_OPTIONS=--no-same-owner mmdebstrap --quiet --mode=chrootless --skip=check/chrootless --variant=extract --architectures=arm64 \
        --hook-dir=/usr/share/mmdebstrap/hooks/merged-usr --aptopt='Apt::Install-Recommends "false"' \
        --include="$packages" --extract-hook="'$0' --kernel '$1'" "$suite" "$1/root" >"$1/log" 2>&1 || {
        tail -n 20 "$1/log" >&2
        return 1
    }
    fnModules "$1"
    fnFinish "$1/root"
}

fnStrip() { # PROGRAM DESTINATION
    install -D -s --strip-program=aarch64-linux-gnu-strip "$build/$1" "$2"
}

fnDisk() { # BASE DIR
    local root=$2/root
    fnSay 'puts the device together'
    cp -al "$1/root" "$root"
    for package in "$build"/aarch64-release/tarnixui*_arm64.deb; do
        dpkg-deb -x "$package" "$root"
    done
    rm -rf "$root/usr/share/"{doc,man}
    cp -r --remove-destination root/. "$root"
    fnStrip aarch64/simulator/ovik-simulator "$root/usr/bin/ovik-simulator"
    [[ $kind != benchmark ]] || fnBenchmarks "$root"
    ../tools/device/install.sh "$root"
    find "$root" -newermt "@$SOURCE_DATE_EPOCH" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
    : >"$2/disk.img" # else it says that it creates it
    mke2fs -qF -t ext4 -d "$root" -U "$uuid" -E "hash_seed=$uuid,root_owner=0:0" -b 4096 "$2/disk.img" "${size[$kind]}"
}

fnBenchmarks() { # ROOT
    local file
    for file in "${benchmarks[@]}"; do
        fnStrip "aarch64-benchmark/$file" "$1/usr/lib/benchmark/$file"
    done
    mv "$1/usr/lib/benchmark/simulator/ovik-simulator" "$1/usr/bin" # optimised, too
    cp ../benchmarks/touch/*.py "$1/usr/lib/benchmark"
}

fnInitrd() { # BASE DIR
    local root=$2/initrd.root
    mkdir -p "$root"/{bin,dev,emulator/plugins/generic,proc,root,sys}
    cp -r "$1/modules/lib" "$1/modules.list" "$root"
    cp "$1/root/usr/bin/busybox" "$root/bin"
    install -m 755 init.sh "$root/init"
    fnStrip aarch64/device/agent "$root/emulator/agent"
    fnStrip aarch64/tools/plugins/generic/libprobe.so "$root/emulator/plugins/generic/libprobe.so"
}

fnPack() { # DIR: the initrd's folder becomes the archive that the kernel reads
    cd "$1"
    find . -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
    find . | LC_ALL=C sort | cpio --quiet --reproducible -o -H newc -R 0:0 | zstd -q -T0 -o ../initrd
}

fnMake() { # in a user namespace: all files belong to root
    local work=$folder.new
    rm -rf "$work"
    mkdir -p "$work"
    if [[ ! -d $base ]]; then
        rm -rf "$base.new"
        mkdir -p "$base.new"
        fnBase "$base.new"
        mv "$base.new" "$base"
    fi
    fnDisk "$base" "$work"
    fnInitrd "$base" "$work"
    (fnPack "$work/initrd.root")
    cp "$base/vmlinuz" "$work/kernel"
    rm -rf "$work/root" "$work/initrd.root"
    mv "$work" "$folder"
    find "$build/device" -maxdepth 1 -name "image-$kind-*" ! -path "$folder" -mmin +60 -exec rm -rf {} +
}

kind=plain
building=
export PATH=$PATH:/usr/sbin:/sbin
export SOURCE_DATE_EPOCH=1700000000 E2FSPROGS_FAKE_TIME=1700000000
uuid=6d7a9e2c-52f4-4a0e-9d58-0a1b2c3d4e5f
declare -A size=([plain]=256M [eglfs]=768M [benchmark]=256M)
benchmarks=(src/tarnixUI simulator/ovik-simulator benchmarks/touch/{bare-panel,plugins/generic/libstopwatch.so})
case ${1:-} in
--kernel)
    fnFetchKernel "$2"
    exit
    ;;
--build) building=yes ;;
--eglfs | --benchmark) kind=${1#--} ;;
'') ;;
*) sed -n '5,9s/^# \?//p' "$0" >&2 && exit 2 ;;
esac
cd "$(dirname "$0")"
[[ -z $building || ${DEVICE_IMAGE:-} == inside ]] || fnBuild
set -- "$PWD/${0##*/}" "$@"
build=$(realpath ..)/build
suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
base=$build/device/base-$( (fnPackages && echo "$suite $kind" && sed -n '/^fnPackages/,/^fnDisk/p' image.sh) | fnHash)
folder=$build/device/image-$kind-$( (
    echo "$base"
    cat "$build"/aarch64-release/tarnixui*_arm64.deb "$build"/aarch64/{simulator/ovik-simulator,device/agent,tools/plugins/generic/libprobe.so}
    [[ $kind != benchmark ]] || (cd "$build/aarch64-benchmark" && cat "${benchmarks[@]}" ../../benchmarks/touch/*.py)
    find image.sh init.sh root ../tools/device -type f -exec cat {} +
) | fnHash)
if [[ ! -d $folder ]]; then
    if [[ ${DEVICE_IMAGE:-} != inside ]]; then
        DEVICE_IMAGE=inside unshare --map-root-user "$@" >&2
    else
        fnMake
        exit
    fi
fi
echo "$folder"
