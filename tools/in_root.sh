#!/usr/bin/env bash
# in_root.sh FOLDER COMMAND...: runs the command as root in a folder made by tools/bare_root.sh, with the usual devices.
# Mounts and processes have their own namespaces. They disappear when the command ends, so the folder can be deleted.
set -euo pipefail
[ $# -gt 1 ] || { echo "usage: tools/in_root.sh FOLDER COMMAND..." >&2; exit 2; }

enter() {
  local root=$1 device
  shift
  mount -t proc proc "$root/proc"
  mount -t tmpfs -o mode=0755 tmpfs "$root/dev"
  mkdir "$root/dev/pts" "$root/dev/shm"
  mount -t devpts -o newinstance,ptmxmode=0666,mode=0620 devpts "$root/dev/pts"
  mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
  for device in null zero full random urandom tty; do
    touch "$root/dev/$device"
    mount --bind "/dev/$device" "$root/dev/$device"
  done
  ln -s pts/ptmx "$root/dev/ptmx"
  ln -s /proc/self/fd "$root/dev/fd"
  for device in 0:stdin 1:stdout 2:stderr; do ln -s "/proc/self/fd/${device%:*}" "$root/dev/${device#*:}"; done
  exec env --ignore-environment PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
    TERM="${TERM:-dumb}" ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
    ${no_proxy:+no_proxy="$no_proxy"} chroot "$root" "$@"
}
export -f enter
exec unshare --mount --pid --fork --kill-child bash -euc 'enter "$@"' enter "$@"
