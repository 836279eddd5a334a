# Completion of murmel for fish. The commands are asked of murmel itself, so that they cannot disagree.
function __murmel_commands
    murmel --help 2>/dev/null | sed -nE '/^Subcommands:/,$s/^  ([a-z][a-z-]*) *(.*)/\1\t\2/p'
end
function __murmel_options
    set -l words (commandline -opc)
    test (count $words) -gt 1; and murmel $words[2] --help 2>/dev/null | grep -oE -- '--[a-z][a-z-]*' | sort -u
end
complete -c murmel -f
complete -c murmel -n __fish_use_subcommand -a '(__murmel_commands)'
complete -c murmel -n 'not __fish_use_subcommand' -a '(__murmel_options)'
complete -c murmel -n '__fish_seen_subcommand_from transcribe' -F
complete -c murmel -n '__fish_seen_subcommand_from models' -a 'list download verify remove'
complete -c murmel -n '__fish_seen_subcommand_from update' -a 'check install'
complete -c murmel -n '__fish_seen_subcommand_from history' -a 'list show copy delete clear'
complete -c murmel -n '__fish_seen_subcommand_from vocabulary' -a 'list add remove import export retry'
complete -c murmel -n '__fish_seen_subcommand_from settings; and not __fish_seen_subcommand_from get set reset' -a 'list get set reset'
complete -c murmel -n '__fish_seen_subcommand_from get set reset' -a '(murmel settings list 2>/dev/null | string split -f1 " ")'
