# Completion of adserver's options in bash.
_adserver() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  case $previous in
  --campaigns | --into) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
  --record) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
  --port | --forward) COMPREPLY=() ;;
  *) mapfile -t COMPREPLY < <(compgen -W "--port --campaigns --record --forward --into --list --version --help" -- "$current") ;;
  esac
}
complete -o filenames -F _adserver adserver
