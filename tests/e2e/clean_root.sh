#!/usr/bin/env bash
# The package in a Debian that was bootstrapped for it: first with nothing but what it depends on, then
# a whole first hour, with an upgrade over an older version and the removal.
#
# Usage: clean_root.sh FOLDER PACKAGE SCRIPTED_HTTPS
#
# FOLDER keeps the base system and the packages of Debian that were fetched, for the next time. Ends
# with 77, having said why, where a base system cannot be had: that takes root, debootstrap and a
# mirror of Debian.
set -euo pipefail

if [[ ${VELARC_OWN_MOUNTS:-} != yes ]]; then
    if ! reason=$(unshare --mount true 2>&1) || [[ $(id -u) != 0 ]]; then
        echo "Skipped: a system of its own takes root. $reason"
        exit 77
    fi
    VELARC_OWN_MOUNTS=yes exec unshare --mount "$0" "$@" # which go with it
fi

source=$(readlink -f -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../..")
folder=$1
package=$(readlink -f -- "$2")
server=$(readlink -f -- "$3")
base=$folder/base
root=$folder/root
archives=$folder/archives
# The tools of the tests; the two parts of the desktop that the package recommends and that the first
# hour cannot do without.
tools=(python3 python3-gi gir1.2-atspi-2.0 at-spi2-core xvfb xdotool xclip libsecret-tools
    libglib2.0-bin openssl desktop-file-utils dbus dbus-bin gnome-keyring)

say() {
    printf '\n=== %s\n' "$*"
}

# A command, and with its end the end of everything that it has started.
within() {
    unshare --pid --fork --kill-child --mount-proc="$root/proc" \
        env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb \
        DEBIAN_FRONTEND=noninteractive chroot "$root" "$@"
}

install() {
    within apt-get -qq install --yes --no-install-recommends "$@" >"$folder/apt.log" 2>&1 \
        || { cat "$folder/apt.log" >&2; return 1; }
}

make_base() {
    [[ ! -e $base.done ]] || return 0
    say "Bootstrapping"
    command -v debootstrap >/dev/null || { echo "Skipped: there is no debootstrap"; exit 77; }
    rm -rf -- "$base"
    if ! debootstrap --variant=minbase bookworm "$base" >"$folder/debootstrap.log" 2>&1; then
        echo "Skipped: no base system: $(tail -n 1 "$folder/debootstrap.log")"
        exit 77
    fi
    cp -L /etc/resolv.conf "$base/etc/resolv.conf"
    printf '127.0.0.1 localhost\n' >"$base/etc/hosts"
    chroot "$base" apt-get -qq update
    touch "$base.done"
}

# The base, as fresh as it was made.
fresh_root() {
    mkdir -p "$root" "$archives/partial"
    mount -t tmpfs none "$root"
    mkdir "$root"/{upper,work,root}
    mount -t overlay none "$root/root" \
        -o "lowerdir=$base,upperdir=$root/upper,workdir=$root/work"
    root=$root/root
    mount --bind "$archives" "$root/var/cache/apt/archives"
    mount -t proc none "$root/proc"
    mount --rbind /dev "$root/dev"
    mount -t tmpfs none "$root/tmp"
    mkdir "$root/tmp/packages"
    cp -- "$package" "$root/tmp/packages/new.deb"
}

leave_root() {
    root=$folder/root
    umount --recursive --lazy "$root" # something may still look at a device
}

# Every file of the system, but for what apt and dpkg note for themselves.
files() {
    (cd -- "$root" && find . -xdev \( -path ./tmp -o -path ./root -o -path ./var/lib/apt \
        -o -path ./var/lib/dpkg -o -path ./var/cache -o -path ./var/log \) -prune -o -print) | sort
}

expect_nothing_left() {
    if ! diff "$1" <(files) >&2; then
        echo "clean_root.sh: the removal left these" >&2
        return 1
    fi
    echo "Nothing is left but the user's data."
}

# The same package by a lower version.
make_older_package() {
    local tree=$root/tmp/packages/older
    dpkg-deb --raw-extract "$package" "$tree"
    sed -i 's/^Version: .*/Version: 0.0.1/' "$tree/DEBIAN/control"
    dpkg-deb --root-owner-group --build "$tree" "$root/tmp/packages/old.deb" >/dev/null
    rm -r -- "$tree"
}

with_nothing_else() {
    say "With what the package depends on"
    fresh_root
    install /tmp/packages/new.deb
    cp -- "$source/tests/e2e/plain_root.sh" "$root/tmp/"
    within sh /tmp/plain_root.sh
    within apt-get -qq purge --yes velarc >"$folder/apt.log" 2>&1
    if (cd -- "$root" && find . -xdev -iname '*velarc*' -not -path './tmp/*' | grep .) >&2; then
        echo "clean_root.sh: the removal left these" >&2
        return 1
    fi
    leave_root
}

first_hour() {
    say "The first hour"
    fresh_root
    make_older_package
    install "${tools[@]}"
    within apt-get -qq satisfy --yes --no-install-recommends \
        "$(dpkg-deb --field "$package" Depends)" >"$folder/apt.log" 2>&1
    files >"$folder/files"
    mkdir "$root/tmp/tests"
    cp -r -- "$source/tests/"{e2e,session,fixtures} "$root/tmp/tests/"
    cp -- "$server" "$root/tmp/tests/"
    install /tmp/packages/old.deb
    within env VELARC_PREFIX=/usr VELARC_FIXTURES=/tmp/tests/fixtures VELARC_SESSION_BUS=desktop \
        VELARC_SCRIPTED_HTTPS=/tmp/tests/velarc_scripted_https /tmp/tests/e2e/first_hour.sh \
        "dpkg --install /tmp/packages/new.deb" "apt-get -qq -o Dpkg::Use-Pty=0 -o Dpkg::Progress-Fancy=0 purge --yes velarc >/dev/null"
    expect_nothing_left "$folder/files"
    leave_root
}

mkdir -p "$folder"
folder=$(readlink -f -- "$folder")
make_base
with_nothing_else
first_hour
