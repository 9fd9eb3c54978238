# Completion of velarc-share for fish.
complete -c velarc-share -f
complete -c velarc-share -l action -x -d 'The action to run' \
    -a "(velarc-cli actions 2>/dev/null | string replace -r '^[^\t]*\t' '')"
complete -c velarc-share -l source -x -d 'The program that shares'
complete -c velarc-share -l result -d 'The text is a result'
complete -c velarc-share -l action-name -x -d 'The action that made the result'
complete -c velarc-share -s h -l help -d 'Show the help and end'
complete -c velarc-share -l version -d 'Show the version and end'
