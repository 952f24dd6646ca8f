#!/bin/sh
# The Debian 12 arm64 system `make test-system` boots: a raw ext4 disk, the kernel and initramfs to boot it
# with, and the key root accepts over ssh. Built once by mmdebstrap from Debian's archive (the maintainer
# scripts run under qemu-user through binfmt_misc) and kept under ~/.cache/interfaces-v2/system/, in a
# folder named by the hash of this script, which holds every input: release, packages, set-up.
# Prints that folder.
#   scripts/system-image.sh            build when missing, print the folder
#   scripts/system-image.sh --where    print the folder only
#   scripts/system-image.sh initramfs-modules ROOT | customize ROOT KEYDIR   (mmdebstrap's hooks)
set -eu

RELEASE=bookworm
PACKAGES=linux-image-arm64,initramfs-tools,systemd,systemd-sysv,udev,dbus,apt,lighttpd,curl,openssh-server
DISK_SIZE=4G
CACHE=${IF_SYSTEM_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/interfaces-v2/system}

# Before the kernel is installed: its initramfs holds only what -M virt needs to mount the root file system
# (virtio over PCI, the disk, ext4). Every module, initramfs-tools' default, costs half an hour here, since
# each file copied is a process under qemu-user.
initramfs_modules() {
    root=$1
    mkdir -p "$root/etc/initramfs-tools/conf.d" "$root/usr/share/initramfs-tools/modules.d"
    echo MODULES=list > "$root/etc/initramfs-tools/conf.d/test-system"
    printf 'virtio_pci\nvirtio_blk\next4\n' > "$root/usr/share/initramfs-tools/modules.d/test-system"
}

customize() {
    root=$1 keys=$2
    echo test-system > "$root/etc/hostname"
    echo '/dev/vda / ext4 defaults 0 1' > "$root/etc/fstab"
    printf '[Match]\nName=en*\n\n[Network]\nDHCP=yes\n' > "$root/etc/systemd/network/20-wired.network"
    chroot "$root" systemctl enable systemd-networkd
    # QEMU's user network answers DNS at this address.
    rm -f "$root/etc/resolv.conf" && echo 'nameserver 10.0.2.3' > "$root/etc/resolv.conf"
    install -d -m 0700 "$root/root/.ssh"
    install -m 0600 "$keys/id_ed25519.pub" "$root/root/.ssh/authorized_keys"
    cp -L "$root/vmlinuz" "$keys/vmlinuz" && cp -L "$root/initrd.img" "$keys/initrd.img"
}

# An aarch64 program runs here only through binfmt_misc; register qemu-user's handler when it is missing.
can_run_arm64() {
    [ -e /proc/sys/fs/binfmt_misc/qemu-aarch64 ] && return 0
    [ -e /proc/sys/fs/binfmt_misc/register ] || mount -t binfmt_misc binfmt_misc /proc/sys/fs/binfmt_misc
    cat /usr/lib/binfmt.d/qemu-aarch64.conf > /proc/sys/fs/binfmt_misc/register
}

build() {
    out=$1
    self=$(readlink -f "$0")
    mirror=$(sed -n 's/^URIs: *//p' /etc/apt/sources.list.d/debian.sources 2>/dev/null | head -1)
    mkdir -p "$CACHE"
    work=$(mktemp -d "$CACHE/.build.XXXXXX")
    trap 'rm -rf "$work"' EXIT
    ssh-keygen -q -t ed25519 -N '' -C test-system -f "$work/id_ed25519"
    # The package lists stay, as on any installed system, so that apt in the guest installs at once.
    mmdebstrap --arch=arm64 --variant=apt --include="$PACKAGES" --skip=cleanup/apt/lists \
        --essential-hook="'$self' initramfs-modules \"\$1\"" \
        --customize-hook="'$self' customize \"\$1\" '$work'" \
        "$RELEASE" "$work/root" "deb ${mirror:-http://deb.debian.org/debian} $RELEASE main" >&2
    mke2fs -q -t ext4 -L root -d "$work/root" "$work/disk.img" "$DISK_SIZE" >&2
    rm -rf "$work/root"
    mv "$work" "$out"
    trap - EXIT
}

[ "${1:-}" = initramfs-modules ] && { initramfs_modules "$2"; exit 0; }
[ "${1:-}" = customize ] && { customize "$2" "$3"; exit 0; }
out=$CACHE/$RELEASE-arm64-$(sha256sum "$0" | cut -c1-16)
[ "${1:-}" = --where ] && { echo "$out"; exit 0; }
if [ ! -e "$out/disk.img" ]; then
    can_run_arm64
    build "$out"
fi
echo "$out"
