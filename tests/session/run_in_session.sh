#!/usr/bin/env bash
# Runs a command in a desktop session of its own: a home, a runtime folder and a bus that nobody else
# uses and that go with it, together with every process that was started in it. Ends with the
# command's status, or with 97 if the session could not be made.
#
# Usage: run_in_session.sh COMMAND [ARGUMENTS]
#
#   VELARC_SESSION_BUS       private  starts only what VELARC_SESSION_SERVICES names (the default)
#                            desktop  starts what is installed on this machine as well
#                            none     there is no bus
#   VELARC_SESSION_KEYRING   none     nobody serves secrets, unless the bus starts somebody (the
#                                     default)
#                            unlocked the keyring daemon runs, its login collection is unlocked
#   VELARC_SESSION_SERVICES  a folder whose *.service files the bus knows
#   VELARC_SESSION_HOME      a folder that is the user's home and outlasts the session, if one is given
#   VELARC_SESSION_DENIED    a name to which the bus lets nobody speak
#
# In the session VELARC_SESSION names its folder, and VELARC_SESSION_PASSWORD is the password of the
# login collection.
set -euo pipefail

bus=${VELARC_SESSION_BUS:-private}
keyring=${VELARC_SESSION_KEYRING:-none}
secrets=org.freedesktop.secrets
daemons=()

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 97
}

make_folders() {
    export VELARC_SESSION VELARC_SESSION_PASSWORD=session
    VELARC_SESSION=$(mktemp -d /tmp/velarc.XXXXXX) # short: the paths of sockets are limited
    export HOME=${VELARC_SESSION_HOME:-$VELARC_SESSION/home} XDG_RUNTIME_DIR=$VELARC_SESSION/run
    export XDG_CONFIG_HOME=$HOME/.config XDG_DATA_HOME=$HOME/.local/share
    export XDG_CACHE_HOME=$HOME/.cache XDG_STATE_HOME=$HOME/.local/state
    mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME"
    mkdir -m 700 "$XDG_RUNTIME_DIR"
}

# No display: a library that finds one and no bus may start a bus of its own.
isolate_environment() {
    unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS DBUS_STARTER_ADDRESS SSH_AUTH_SOCK
    unset GNOME_KEYRING_CONTROL SECRET_BACKEND
    export LC_ALL=C.UTF-8 TZ=${TZ:-America/New_York} QT_QPA_PLATFORM=offscreen
    export GSETTINGS_BACKEND=memory GIO_USE_VFS=local NO_AT_BRIDGE=1
}

write_bus_config() {
    local services=
    [[ $bus != desktop ]] || services='<standard_session_servicedirs/>'
    [[ -z ${VELARC_SESSION_SERVICES:-} ]] \
        || services+="<servicedir>$VELARC_SESSION_SERVICES</servicedir>"
    local denied=
    [[ -z ${VELARC_SESSION_DENIED:-} ]] \
        || denied="<deny send_destination=\"$VELARC_SESSION_DENIED\"/>"
    cat <<END
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=$XDG_RUNTIME_DIR/bus</listen>
  <auth>EXTERNAL</auth>
  $services
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
    $denied
  </policy>
</busconfig>
END
}

# Runs a daemon of the session, which writes into LOG what it has to say.
start_daemon() {
    local log=$1
    shift
    "$@" <&0 2>"$log" & # without <&0 a job in the background would read nothing
    daemons+=($!)
}

# The daemon tells its address once it listens.
start_bus() {
    local log=$VELARC_SESSION/bus.log address= ready
    write_bus_config >"$VELARC_SESSION/bus.conf"
    mkfifo "$VELARC_SESSION/bus.ready"
    exec {ready}<>"$VELARC_SESSION/bus.ready"
    start_daemon "$log" \
        dbus-daemon --nofork --config-file="$VELARC_SESSION/bus.conf" --print-address="$ready"
    read -r -t 20 -u "$ready" address || { cat "$log" >&2; die "no bus"; }
    exec {ready}>&-
    export DBUS_SESSION_BUS_ADDRESS=$address
}

has_collection() {
    [[ $(gdbus call --session --dest "$secrets" --object-path /org/freedesktop/secrets \
        --method org.freedesktop.Secret.Service.ReadAlias default) == *collection* ]]
}

# Without the line feed behind the password there would be no login collection; it comes some time
# after the daemon has taken its name.
start_keyring() {
    local log=$VELARC_SESSION/keyring.log
    start_daemon "$log" gnome-keyring-daemon --foreground --unlock --components=secrets \
        >/dev/null <<<"$VELARC_SESSION_PASSWORD"
    gdbus wait --session --timeout 20 "$secrets" || { cat "$log" >&2; die "no keyring"; }
    local tries
    for tries in {1..200}; do
        ! has_collection || return 0
        sleep 0.02
    done
    die "no collection after $tries tries"
}

# The processes whose environment is the session's, but for this one.
processes() {
    local environment pid
    for environment in /proc/[0-9]*/environ; do
        pid=${environment//[!0-9]/}
        if ((pid != $$)) && grep -qsz "^VELARC_SESSION=$VELARC_SESSION\$" "$environment"; then
            printf '%s\n' "$pid"
        fi
    done 2>/dev/null
}

# The end of the bus ends what it started, most of the time.
end_session() {
    local left signal
    if ((${#daemons[@]} > 0)); then
        kill "${daemons[@]}" 2>/dev/null || true
        wait "${daemons[@]}" 2>/dev/null || true
    fi
    for signal in 0 0 0 0 TERM TERM 0 0 0 0 KILL KILL; do
        mapfile -t left < <(processes)
        ((${#left[@]} > 0)) || break
        kill -s "$signal" "${left[@]}" 2>/dev/null || true
        sleep 0.1
    done
    rm -rf -- "$VELARC_SESSION"
}

(($# > 0)) || die "which command?"
case $bus in private | desktop | none) ;; *) die "no bus is called '$bus'" ;; esac
case $keyring in none | unlocked) ;; *) die "no keyring is called '$keyring'" ;; esac
[[ $bus != none || $keyring == none ]] || die "a keyring needs a bus"
make_folders
trap end_session EXIT
isolate_environment
[[ $bus == none ]] || start_bus
[[ $keyring == none ]] || start_keyring
"$@"
