#!/usr/bin/env bash
# What ./dev check --long runs: every program in tests/long, one after the other, however long it
# takes. Each ends with 0, with 1 if it found a fault, or with 77 where it cannot run here, having
# said why. With names, those alone.
set -euo pipefail

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../tests/long"
faults=() skipped=()

for check in *; do
    name=${check%.*}
    [[ -f $check && -x $check ]] || continue
    (($# == 0)) || [[ " $* " == *" $name "* ]] || continue
    printf '\n== %s\n' "${name//_/ }"
    status=0
    "./$check" || status=$?
    case $status in
        0) ;;
        77) skipped+=("$name") ;;
        *) faults+=("$name") ;;
    esac
done

printf '\n%s\n' "Skipped: ${skipped[*]:-nothing}" "With faults: ${faults[*]:-nothing}"
((${#faults[@]} == 0))
