#!/bin/busybox sh
# shellcheck shell=dash disable=SC2154 # from the kernel's command line
# First process of the emulated device: loads the kernel's modules, mounts the disk, lets the emulator's agent in and
# starts the device's own init. None of this is on the disk.
# The kernel's command line: screen=WIDTHxHEIGHT touch=single|multi (if not given) keyboard=1; ro mounts the disk for reading only;
# copy=1 boots from a copy in memory instead; /run/copied then has the times before drivers and disk and after copying.
export PATH=/bin
/bin/busybox --install -s /bin
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs devtmpfs /dev
read -r start _ </proc/uptime
xargs modprobe -a </modules.list
mode=rw
grep -qw ro /proc/cmdline && mode=ro
mount -t ext4 -o "$mode" /dev/vda /root || exit 1
if [ -n "$copy" ]; then
    mkdir /mnt
    mount --move /root /mnt
    mount -t tmpfs -o mode=755 tmpfs /root
    cp -a /mnt/. /root
    umount /mnt
    read -r end _ </proc/uptime
fi
mount -t tmpfs -o mode=755 tmpfs /root/run
[ -z "$copy" ] || echo "$start $end" >/root/run/copied
cp -a /emulator /root/run/emulator
for folder in dev proc sys; do
    mount --move "/$folder" "/root/$folder"
done
if [ -n "$keyboard" ]; then
    for device in /root/sys/class/input/event*; do
        grep -q Keyboard "$device/device/name" && ln -s "${device##*/}" /root/dev/input/keyboard
    done
fi
port=$(echo /root/dev/vport*p1)
chroot /root /run/emulator/agent "/dev/${port##*/}" "${screen%x*}" "${screen#*x}" "${touch:-multi}"
exec switch_root /root /sbin/init
