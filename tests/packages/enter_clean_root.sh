#!/usr/bin/env bash
# enter_clean_root.sh ROOT KEPT PACKAGES AND PAGE...: unpacks KEPT/root.tar into ROOT and runs in_clean_root.sh there, with the
# files beside it. To be run as root in namespaces of its own, with which mounts and servers go. What apt fetches is kept in
# KEPT/archives.
set -euo pipefail
root=$1 kept=$2
shift 2

mkdir -p "$root"
tar -xf "$kept/root.tar" -C "$root" --exclude './dev/*'
mount --make-rprivate /
mount -t proc proc "$root/proc"
mount -t tmpfs -o mode=755 tmpfs "$root/dev"
for device in null zero full random urandom tty; do
    : >"$root/dev/$device"
    mount --bind "/dev/$device" "$root/dev/$device"
done
ln -s /proc/self/fd "$root/dev/fd"
mkdir -m 1777 "$root/dev/shm"
mount --bind "$kept/archives" "$root/var/cache/apt/archives"
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"  # no service is started
chmod +x "$root/usr/sbin/policy-rc.d"

mkdir "$root/packages"
cp "$@" "$(dirname "$(readlink -f "$0")")/in_clean_root.sh" "$root/packages"
env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    ${http_proxy:+"http_proxy=$http_proxy"} ${https_proxy:+"https_proxy=$https_proxy"} \
    chroot "$root" bash /packages/in_clean_root.sh
