#!/usr/bin/env bash
# What ./dev check holds the tree to, beside the tests. Every check runs, so that one call shows
# all that is wrong; the status is 1 if any of them failed.
#
# clang-tidy takes seconds for each file and minutes for all, so it reads only what changed since the
# branch left main, and in main itself what is not committed; --all makes it read everything.
set -euo pipefail

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
tree=build/dev
tidy_tree=$tree/clang-tidy
status=0

# The files of the patterns that are in the tree, ended by NUL: tracked ones and new ones.
sources() {
    comm -z -23 <(git ls-files -z --cached --others --exclude-standard -- "$@" | sort -zu) \
        <(git ls-files -z --deleted -- "$@" | sort -zu)
}

check_format() {
    local file files unformatted=()
    mapfile -d '' files < <(sources '*.cpp' '*.h')
    for file in "${files[@]}"; do
        clang-format-14 "$file" | cmp -s - "$file" || unformatted+=("$file")
    done
    if ((${#unformatted[@]} > 0)); then
        printf '%s\n' "Not formatted (./dev format mends it):" "${unformatted[@]/#/  }"
        return 1
    fi
}

# The commit that the branch left main at; main's own head where the branch is main.
branch_base() {
    local main
    for main in main origin/main; do
        git merge-base HEAD "$main" 2>/dev/null && return
    done
    git rev-parse HEAD
}

# The .cpp files to read: the changed ones, and those beside changed headers.
files_to_tidy() {
    if [[ ${1:-} == --all ]]; then
        sources 'src/*.cpp' 'tests/*.cpp'
        return
    fi
    local file
    { git diff -z --name-only "$(branch_base)" -- src tests
        git ls-files -z --others --exclude-standard -- src tests; } \
        | while IFS= read -r -d '' file; do
            file=${file%.h}
            file=${file%.cpp}.cpp
            [[ ! -e $file ]] || printf '%s\0' "$file"
        done | sort -zu
}

# The build's commands without its precompiled headers, which only g++ can read.
write_tidy_commands() {
    mkdir -p "$tidy_tree"
    sed -E 's/ -Winvalid-pch//; s/ -include (\\"[^"]*cmake_pch\.hxx\\"|[^ "]*cmake_pch\.hxx)//' \
        "$tree/compile_commands.json" >"$tidy_tree/compile_commands.json"
}

tidy() {
    local files since
    write_tidy_commands
    mapfile -d '' files < <(files_to_tidy "$@")
    since=$(git log -1 --format='since %h (%s)' "$(branch_base)")
    [[ ${1:-} != --all ]] || since="in all"
    printf 'clang-tidy: %d files %s\n' "${#files[@]}" "$since"
    ((${#files[@]} > 0)) || return 0
    printf '%s\0' "${files[@]}" \
        | xargs -0 -n 1 -P "$(nproc)" clang-tidy-16 -p "$tidy_tree" --quiet 2>/dev/null
}

check_format || status=1
for script in tools/check_*.py; do
    python3 "$script" || status=1
done
bash tools/lint_qml.sh "$tree" || status=1
tidy "$@" || status=1
((status == 0)) && echo "All checks passed." || echo "Some checks failed."
exit "$status"
