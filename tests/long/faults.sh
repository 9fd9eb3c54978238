#!/usr/bin/env bash
# The long forms of tests/faults: a hundred kills of each program at random moments, and a store that
# another process holds for longer than anybody waits.
set -euo pipefail

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../.."
VELARC_LONG=yes VELARC_KILLS=${VELARC_KILLS:-100} \
    ctest --test-dir build/dev --verbose -R '^faults_(disk|kill)$' </dev/null
