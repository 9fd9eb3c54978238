# Completion of velarc, velarc-cli and velarc-share for bash.

# The titles of the actions that begin with the current word. Within quotes they stand as they are,
# else what the shell would read is escaped.
_velarc_titles() {
    local title word=${1//\\/} escape=%q
    [[ $word != [\"\']* ]] || escape=%s
    word=${word#[\"\']}
    while IFS=$'\t' read -r _ title; do
        if [[ ${title,,} == "${word,,}"* ]]; then
            printf -v title "$escape" "$title"
            COMPREPLY+=("$title")
        fi
    done < <(velarc-cli actions 2>/dev/null)
}

_velarc_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

_velarc_cli() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $previous in
        -o | --output)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
    esac
    if [[ $current == -* ]]; then
        case ${COMP_WORDS[1]:-} in
            actions) _velarc_words "--json --help" "$current" ;;
            run) _velarc_words "--json --output --help" "$current" ;;
            export) _velarc_words "--output --help" "$current" ;;
            import) _velarc_words "--dry-run --help" "$current" ;;
            *) _velarc_words "--help --version" "$current" ;;
        esac
    elif ((COMP_CWORD == 1)); then
        _velarc_words "actions run export import serve" "$current"
    elif [[ ${COMP_WORDS[1]} == @(run|export) ]] && ((COMP_CWORD == 2)); then
        _velarc_titles "$current"
    elif [[ ${COMP_WORDS[1]} == import ]]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}

_velarc_share() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $previous in
        --action) _velarc_titles "$current" ;;
        --source | --action-name) ;;
        *) _velarc_words "--action --source --result --action-name --help --version" "$current" ;;
    esac
}

_velarc() {
    _velarc_words "--help --version" "${COMP_WORDS[COMP_CWORD]}"
}

complete -F _velarc_cli velarc-cli
complete -F _velarc_share velarc-share
complete -F _velarc velarc
