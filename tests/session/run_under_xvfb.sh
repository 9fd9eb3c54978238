#!/usr/bin/env bash
# Runs a command on an X server of its own that shows nothing, and ends as the command does.
#
#   run_under_xvfb.sh COMMAND [ARGUMENTS]
#
# Any number of them run at once, as any user. However it ends, no server and no file is left.
set -euo pipefail

if (($# == 0)); then
    echo "Usage: run_under_xvfb.sh COMMAND [ARGUMENTS]" >&2
    exit 2
fi

folder=$(mktemp -d)
server= command=

finish() {
    trap - EXIT HUP INT TERM
    local process
    for process in $command $server; do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    rm -rf -- "$folder"
}
trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# The server picks a free display and writes its number. Should this script be killed outright, the
# kernel ends the server and the command.
mkfifo -- "$folder/display"
setpriv --pdeathsig TERM \
    Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset \
    3>"$folder/display" >"$folder/log" 2>&1 </dev/null &
server=$!
if ! read -r -t 30 display <"$folder/display"; then
    cat -- "$folder/log" >&2
    echo "run_under_xvfb.sh: the X server did not start" >&2
    exit 1
fi
rm -rf -- "$folder"

unset WAYLAND_DISPLAY XAUTHORITY
DISPLAY=:$display QT_QPA_PLATFORM=xcb setpriv --pdeathsig TERM "$@" <&0 &
command=$!
status=0
wait "$command" || status=$?
command=
exit "$status"
