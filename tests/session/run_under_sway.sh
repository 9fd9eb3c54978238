#!/usr/bin/env bash
# Runs a command under a Wayland compositor of its own that shows nothing, and ends as the command
# does, or with 77 where there is no such compositor.
#
#   run_under_sway.sh COMMAND [ARGUMENTS]
set -euo pipefail

if (($# == 0)); then
    echo "Usage: run_under_sway.sh COMMAND [ARGUMENTS]" >&2
    exit 2
fi
for program in sway wl-copy wl-paste wtype; do
    if ! command -v "$program" >/dev/null; then
        echo "Skipped: $program is not installed"
        exit 77
    fi
done

folder=$(mktemp -d)
chmod 700 "$folder"
compositor=

finish() {
    trap - EXIT HUP INT TERM
    if [[ -n $compositor ]]; then
        kill "$compositor" 2>/dev/null || true
        wait "$compositor" 2>/dev/null || true
    fi
    rm -rf -- "$folder"
}
trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# The compositor does not run as root; its socket is open to root all the same.
as_user=(setpriv --pdeathsig TERM)
if [[ $(id -u) == 0 ]]; then
    chown nobody:nogroup "$folder"
    as_user+=(--reuid=nobody --regid=nogroup --clear-groups)
fi
echo "xwayland disable" >"$folder/config"
chmod 644 "$folder/config"
export XDG_RUNTIME_DIR=$folder
unset DISPLAY WAYLAND_DISPLAY
mkfifo -m 666 "$folder/display"

# It tells its display to the first program that it starts.
echo "exec sh -c 'echo \$WAYLAND_DISPLAY >$folder/display'" >>"$folder/config"
HOME=$folder WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman \
    "${as_user[@]}" sway -c "$folder/config" >"$folder.log" 2>&1 </dev/null &
compositor=$!
if ! read -r -t 30 WAYLAND_DISPLAY <"$folder/display"; then
    cat -- "$folder.log" >&2
    rm -f -- "$folder.log"
    echo "run_under_sway.sh: the compositor did not start" >&2
    exit 1
fi
rm -f -- "$folder.log"
export WAYLAND_DISPLAY QT_QPA_PLATFORM=wayland
"$@"
