#!/usr/bin/env bash
# Runs the tests of the clipboard under a Wayland compositor, with other programs as the other side.
# Arguments go to the test program.
set -euo pipefail

root=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../..
exec "$root/tests/session/run_under_sway.sh" \
    "$root/build/${VELARC_PRESET:-dev}/bin/velarc_wayland_clipboard_tests" "$@"
