# Completion of velarc-cli for fish.
function __velarc_titles
    velarc-cli actions 2>/dev/null | string replace -r '^[^\t]*\t' ''
end

complete -c velarc-cli -f
complete -c velarc-cli -n __fish_use_subcommand -a actions -d 'List the actions'
complete -c velarc-cli -n __fish_use_subcommand -a run -d 'Run an action'
complete -c velarc-cli -n __fish_use_subcommand -a export -d 'Write actions as JSON'
complete -c velarc-cli -n __fish_use_subcommand -a import -d 'Take actions over from a file'
complete -c velarc-cli -n __fish_use_subcommand -a serve -d 'Answer the session bus'
complete -c velarc-cli -n '__fish_seen_subcommand_from actions run' -l json -d 'Answer as JSON'
complete -c velarc-cli -n '__fish_seen_subcommand_from run export' -s o -l output -r -F \
    -d 'Write the result to a file'
complete -c velarc-cli -n '__fish_seen_subcommand_from import' -l dry-run \
    -d 'Tell what it would do'
complete -c velarc-cli -n '__fish_seen_subcommand_from import' -F
complete -c velarc-cli -n '__fish_seen_subcommand_from run export; and __fish_is_nth_token 2' \
    -a '(__velarc_titles)'
complete -c velarc-cli -s h -l help -d 'Show the help and end'
complete -c velarc-cli -l version -d 'Show the version and end'
