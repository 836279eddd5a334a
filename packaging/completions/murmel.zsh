#compdef murmel
# Completion of murmel for zsh. The commands are asked of murmel itself, so that they cannot disagree.
local -a commands options
if (( CURRENT == 2 )); then
  commands=(${(f)"$(murmel --help 2>/dev/null | sed -nE '/^Subcommands:/,$s/^  ([a-z][a-z-]*) *(.*)/\1:\2/p')"})
  _describe command commands
elif [[ $words[CURRENT] == -* ]]; then
  options=(${(f)"$(murmel $words[2] --help 2>/dev/null | grep -oE -- '--[a-z][a-z-]*' | sort -u)"})
  _describe option options
else
  case $words[2] in
    transcribe) _files ;;
    settings)
      if (( CURRENT == 3 )); then
        _values command list get set reset
      elif (( CURRENT == 4 )); then
        options=(${(f)"$(murmel settings list 2>/dev/null | cut -d' ' -f1)"})
        _describe setting options
      fi ;;
    models) (( CURRENT > 3 )) || _values command list download verify remove ;;
    update) (( CURRENT > 3 )) || _values command check install ;;
    history) (( CURRENT > 3 )) || _values command list show copy delete clear ;;
    vocabulary) (( CURRENT > 3 )) || _values command list add remove import export retry ;;
  esac
fi
