#!/usr/bin/env bash
# Makes a Debian package of the committed tree and lets lintian read it.
#
# package.sh ROOT: the package, its log and lintian's words come to ROOT/build/package. Fails if
# lintian finds an error or a warning that packaging/debian/velarc.lintian-overrides does not explain.
set -euo pipefail

root=$1
version=$(dpkg-parsechangelog -l "$root/packaging/debian/changelog" -S Version)
out="$root/build/package"
tree="$out/velarc-$version"

rm -rf -- "$out"
mkdir -p -- "$tree"
git -C "$root" archive HEAD | tar -x -C "$tree"
cp -r -- "$tree/packaging/debian" "$tree/debian"

export CMAKE_CXX_COMPILER_LAUNCHER=ccache # debhelper's own home folder has no cache
CCACHE_DIR=${CCACHE_DIR:-$(ccache -k cache_dir)}
export CCACHE_DIR
if ! (cd -- "$tree" && dpkg-buildpackage --build=binary --no-sign) >"$out/build.log" 2>&1; then
    tail -n 40 -- "$out/build.log" >&2
    exit 1
fi
package=$(find "$out" -maxdepth 1 -name "velarc_${version}_*.deb")
lintian --fail-on error,warning --allow-root "$package" | tee -- "$out/lintian.log" >&2
printf '%s\n' "${package#"$PWD"/}"
