#!/usr/bin/env bash
# Runs a command where the only network is a loopback of its own, and where it may mount what nobody
# else sees. Ends with the command's status, or with 77 where the kernel or the user may not do that.
#
# Usage: run_off_the_network.sh COMMAND [ARGUMENTS]
set -euo pipefail

if (($# == 0)); then
    echo "Usage: run_off_the_network.sh COMMAND [ARGUMENTS]" >&2
    exit 2
fi

options=(--mount --net)
[[ $(id -u) == 0 ]] || options+=(--map-root-user)
if ! reason=$(unshare "${options[@]}" mount --bind /etc/hosts /etc/hosts 2>&1); then
    echo "Skipped: no namespaces of its own can be had here: $reason"
    exit 77
fi

# The interface is there, but down.
raise='
import fcntl, socket, struct
IFF_UP, SIOCGIFFLAGS, SIOCSIFFLAGS = 1, 0x8913, 0x8914
with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as control:
    request = struct.pack("16sh14x", b"lo", 0)
    _, flags = struct.unpack("16sh14x", fcntl.ioctl(control, SIOCGIFFLAGS, request))
    fcntl.ioctl(control, SIOCSIFFLAGS, struct.pack("16sh14x", b"lo", flags | IFF_UP))
'
exec unshare "${options[@]}" bash -c 'python3 -c "$1" && shift && exec "$@"' off_the_network \
    "$raise" "$@"
