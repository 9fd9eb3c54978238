#!/usr/bin/env bash
# The first hour with the installed program: a session, a new one the next day, a newer version over
# the old one, a third session, and the removal, all with one home.
#
# Usage: first_hour.sh UPGRADE REMOVE
#
# UPGRADE and REMOVE are commands of the shell that do it. The environment names the installed
# programs in VELARC_PREFIX, the server in VELARC_SCRIPTED_HTTPS and the files in VELARC_FIXTURES. Ends
# with 77 where no network of its own can be had.
set -euo pipefail

tests=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")
VELARC_SESSION_HOME=$(mktemp -d /tmp/velarc-home.XXXXXX)
export VELARC_SESSION_HOME VELARC_SESSION_KEYRING=unlocked VELARC=$VELARC_PREFIX/bin/velarc
trap 'rm -rf -- "$VELARC_SESSION_HOME"' EXIT
data=$VELARC_SESSION_HOME/.local/share/velarc

session() {
    printf '\n== %s\n' "$1"
    (cd -- "$tests/e2e" && "$tests/session/run_off_the_network.sh" \
        "$tests/session/run_in_session.sh" "$tests/session/run_under_xvfb.sh" \
        /usr/bin/python3 -B first_hour_test.py --verbose "$1")
}

# What the user's files hold, whatever installs or removes the program.
data_now() {
    find "$data" -type f -exec sha256sum {} + | sort
}

change_nothing_by() {
    local before after
    printf '\n== %s\n' "$1"
    before=$(data_now)
    bash -c "$1"
    after=$(data_now)
    if [[ -z $before || $before != "$after" ]]; then
        diff <(echo "$before") <(echo "$after") >&2 || true
        echo "first_hour.sh: the user's data changed" >&2
        exit 1
    fi
}

session FirstSession
session NextSession
change_nothing_by "$1"
session NextSession
change_nothing_by "$2"
printf '\nThe data that stays:\n'
(cd -- "$VELARC_SESSION_HOME" && find .local/share/velarc -type f)
