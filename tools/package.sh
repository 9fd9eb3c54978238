#!/usr/bin/env bash
# Makes a Debian package of the committed tree, and holds it to what Debian and the desktops ask of one.
#
# package.sh ROOT: the package, its log and lintian's words come to ROOT/build/package; the package's
# path is printed. Fails if lintian finds an error or a warning that
# packaging/debian/velarc.lintian-overrides does not explain, or if a file for the desktops is not
# valid to the last hint.
set -euo pipefail

root=$1
version=$(dpkg-parsechangelog -l "$root/packaging/debian/changelog" -S Version)
out="$root/build/package"
tree="$out/velarc-$version"
package="$out/velarc_${version}_$(dpkg --print-architecture).deb"

make_tree() {
    rm -rf -- "$out"
    mkdir -p -- "$tree"
    git -C "$root" archive HEAD | tar -x -C "$tree"
    cp -r -- "$tree/packaging/debian" "$tree/debian"
}

build_package() {
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache # debhelper's own home folder has no cache
    CCACHE_DIR=${CCACHE_DIR:-$(ccache -k cache_dir)}
    export CCACHE_DIR DEB_BUILD_OPTIONS="parallel=$(nproc) ${DEB_BUILD_OPTIONS:-}"
    if ! (cd -- "$tree" && dpkg-buildpackage --build=binary --no-sign) >"$out/build.log" 2>&1; then
        tail -n 40 -- "$out/build.log" >&2
        return 1
    fi
}

check_package() {
    local files="$out/files" page
    dpkg-deb --extract "$package" "$files"
    appstreamcli validate --no-net --pedantic "$files"/usr/share/metainfo/*.xml
    desktop-file-validate --warn-kde "$files"/usr/share/applications/*.desktop
    for page in "$files"/usr/share/man/man1/*.1.gz; do
        man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null | (! grep .)
    done
    lintian --fail-on error,warning --allow-root "$package" | tee -- "$out/lintian.log"
}

make_tree
build_package
check_package >&2
printf '%s\n' "$package"
