# Completion of velarc for fish.
complete -c velarc -f
complete -c velarc -a 'velarc://share-handoff' -d 'Take up what was shared'
complete -c velarc -a 'velarc://share-result' -d 'Show a shared result'
complete -c velarc -s h -l help -d 'Show the help and end'
complete -c velarc -l version -d 'Show the version and end'
