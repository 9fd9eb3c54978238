#!/bin/sh
# Runs inside a Debian that holds its base, the package, and what the package depends on: nothing that
# is only recommended, no display, no bus, no keyring. Every program must start and do its work.
set -eu

fail() {
    echo "plain_root.sh: $*" >&2
    exit 1
}

HOME=$(mktemp -d)
XDG_RUNTIME_DIR=$HOME/run
export HOME XDG_RUNTIME_DIR QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
mkdir -m 700 "$XDG_RUNTIME_DIR"
window=
trap '[ -z "$window" ] || kill "$window"; rm -rf -- "$HOME"' EXIT

for file in /usr/bin/velarc* /usr/libexec/velarc/velarc-clipboard \
    /usr/libexec/velarc/velarc-documents; do
    ! ldd "$file" | grep 'not found' || fail "$file misses a library"
done
for program in velarc velarc-cli velarc-share; do
    "$program" --version | grep -q "^$program [0-9]" || fail "$program tells no version"
done
[ "$(velarc-cli actions | wc -l)" -gt 10 ] || fail "there are no actions"
velarc-cli run "One-Sentence Summary" "The ferry was late. Nobody minded." >"$HOME/answer"
[ -s "$HOME/answer" ] || fail "the offline engine says nothing"

# The window, until it listens; it says a word only where something is wrong.
velarc 2>"$HOME/said" &
window=$!
tries=0
until [ -S "$XDG_RUNTIME_DIR/velarc.socket" ]; do
    tries=$((tries + 1))
    [ "$tries" -le 300 ] && kill -0 "$window" || fail "no window: $(cat "$HOME/said")"
    sleep 0.1
done
velarc-share --action "Tell Me a Joke" cats || fail "the window does not take a text"
kill "$window"
wait "$window" || fail "the window ended badly: $(cat "$HOME/said")"
window=
said=$(grep -v 'does not support raise()' "$HOME/said" || true) # there is no display to raise it on
[ -z "$said" ] || fail "the window said: $said"

printf '%%PDF-1.4\n' | /usr/libexec/velarc/velarc-documents pdf-text >/dev/null 2>&1 || true
printf 'One page.' | /usr/libexec/velarc/velarc-documents text-pdf --title Page >"$HOME/page.pdf"
/usr/libexec/velarc/velarc-documents pdf-text <"$HOME/page.pdf" | grep -q 'One page.' \
    || fail "a page that was made cannot be read"
echo "Every program works with what the package depends on."
