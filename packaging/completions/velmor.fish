# Completion of velmor's command line for fish.
complete -c velmor -f

complete -c velmor -n __fish_use_subcommand -a now -d 'Say which track is playing'
complete -c velmor -n __fish_use_subcommand -a suggest -d 'Suggest next tracks'
complete -c velmor -n __fish_use_subcommand -a after -d 'Suggest next tracks for one of your own music'
complete -c velmor -n __fish_use_subcommand -a crate -d 'Say what of your own music Velmor knows'
complete -c velmor -n __fish_use_subcommand -a serve -d 'Serve the track to stream overlays on this computer'
complete -c velmor -n __fish_use_subcommand -a doctor -d 'Say which sources, tools and keys are there'
complete -c velmor -n __fish_use_subcommand -a bridge -d "Speak the page's protocol"
complete -c velmor -n __fish_use_subcommand -l version -d 'Print the version and the build date'
complete -c velmor -n __fish_use_subcommand -l help -d 'Print a short help'

complete -c velmor -n '__fish_seen_subcommand_from now suggest after crate doctor' -l json -d 'Print JSON'
complete -c velmor -n '__fish_seen_subcommand_from now' -l follow -d 'Stay, and print a line at each change'
complete -c velmor -n '__fish_seen_subcommand_from now' -l format -x -d 'Print lines of this form'
complete -c velmor -n '__fish_seen_subcommand_from now' -l output -r -F -d 'Write into a file'
complete -c velmor -n '__fish_seen_subcommand_from suggest' -l crate -d 'Suggest from your own music'
complete -c velmor -n '__fish_seen_subcommand_from serve' -l port -x -d 'The port to answer at'
complete -c velmor -n '__fish_seen_subcommand_from doctor' -l ask -d 'Also try key and model'
complete -c velmor -n '__fish_seen_subcommand_from doctor' -l listen -d 'Also record and measure'
