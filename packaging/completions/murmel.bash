# Completion of murmel for bash. The commands are asked of murmel itself, so that they cannot disagree.
_murmel() {
  local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]:-} commands
  commands=$(murmel --help 2>/dev/null | sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\).*/\1/p')
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands --help --version" -- "$word")
    return
  fi
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(murmel "$command" --help 2>/dev/null | grep -oE -- '--[a-z][a-z-]*' | sort -u)" -- "$word")
    return
  fi
  if [ "$command" = settings ] && [[ ${COMP_WORDS[2]} = @(get|set|reset) ]] && [ "$COMP_CWORD" -eq 3 ]; then
    mapfile -t COMPREPLY < <(compgen -W "$(murmel settings list 2>/dev/null | cut -d' ' -f1)" -- "$word")
    return
  fi
  case $command in
    settings) [ "$COMP_CWORD" -gt 2 ] || mapfile -t COMPREPLY < <(compgen -W "list get set reset" -- "$word") ;;
    transcribe) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    models) [ "$COMP_CWORD" -gt 2 ] || mapfile -t COMPREPLY < <(compgen -W "list download verify remove" -- "$word") ;;
    update) [ "$COMP_CWORD" -gt 2 ] || mapfile -t COMPREPLY < <(compgen -W "check install" -- "$word") ;;
    history) [ "$COMP_CWORD" -gt 2 ] || mapfile -t COMPREPLY < <(compgen -W "list show copy delete clear" -- "$word") ;;
    vocabulary) [ "$COMP_CWORD" -gt 2 ] || mapfile -t COMPREPLY < <(compgen -W "list add remove import export retry" -- "$word") ;;
  esac
}
complete -o filenames -F _murmel murmel
