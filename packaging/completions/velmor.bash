# Completion of velmor's command line for bash.
_velmor() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  if [ "$COMP_CWORD" = 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'now suggest after crate serve doctor bridge --version --help' -- "$word")
    return
  fi
  case ${COMP_WORDS[1]}:$before in
  now:--output) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
  now:--format | serve:--port | after:after) COMPREPLY=() ;;
  now:*) mapfile -t COMPREPLY < <(compgen -W '--follow --json --format --output' -- "$word") ;;
  serve:serve) COMPREPLY=(--port) ;;
  doctor:*) mapfile -t COMPREPLY < <(compgen -W '--json --ask --listen' -- "$word") ;;
  suggest:*) mapfile -t COMPREPLY < <(compgen -W '--crate --json' -- "$word") ;;
  crate:* | after:*) mapfile -t COMPREPLY < <(compgen -W '--json' -- "$word") ;;
  *) COMPREPLY=() ;;
  esac
}
complete -o filenames -F _velmor velmor
