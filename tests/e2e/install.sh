#!/usr/bin/env bash
# Installs what was built into a prefix of its own, as a package would, and tells the desktop's
# database of it.
#
# Usage: install.sh CMAKE BUILD_FOLDER PREFIX
set -euo pipefail

rm -rf -- "$3"
"$1" --install "$2" --prefix "$3" >/dev/null
update-desktop-database "$3/share/applications"
