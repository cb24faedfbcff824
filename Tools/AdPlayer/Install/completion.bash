# Completion of adplayer's commands and options in bash.
_adplayer() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local commands
  commands=$(adplayer --help 2>/dev/null | sed -n '/^Subcommands:/,/^$/s/^  \([a-z][a-z-]*\) .*/\1/p')
  if [[ $COMP_CWORD -eq 1 ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands --help --version" -- "$current")
    return
  fi
  case $previous in
  --placement) mapfile -t COMPREPLY < <(compgen -W "banner preroll interstitial" -- "$current") ;;
  --expect) mapfile -t COMPREPLY < <(compgen -W "loaded failed outcome" -- "$current") ;;
  --fail-on) mapfile -t COMPREPLY < <(compgen -W "error warning note never" -- "$current") ;;
  --out | --campaigns) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
  --size | --screen) mapfile -t COMPREPLY < <(compgen -W "320x50 300x250 320x480 360x640 728x90" -- "$current") ;;
  *)
    if [[ $current == -* ]]; then
      mapfile -t COMPREPLY < <(compgen -W "$(adplayer "${COMP_WORDS[1]}" --help 2>/dev/null |
        grep -o -- '--[a-z][a-z-]*' | sort -u)" -- "$current")
    else
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
    ;;
  esac
}
complete -o filenames -F _adplayer adplayer
