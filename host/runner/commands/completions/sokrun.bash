# bash completion for sokrun

_sokrun_scores() {
  compopt -o filenames 2>/dev/null
  local IFS=$'\n'
  COMPREPLY=($(compgen -d -- "$1") $(compgen -f -- "$1" | grep -iE '\.(musicxml|xml|mxl)$'))
}

_sokrun_bundles() {
  compopt -o filenames 2>/dev/null
  local IFS=$'\n'
  COMPREPLY=($(compgen -d -- "$1"))
}

_sokrun() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
  if ((COMP_CWORD == 1)); then
    COMPREPLY=($(compgen -W "fill clear run list info validate scan inspect records texts shapes help version --help --version" -- "$current"))
    return
  fi
  case $previous in
    --hidden-rests) COMPREPLY=($(compgen -W "keep entry empty" -- "$current")) && return ;;
    --cross-staff) COMPREPLY=($(compgen -W "keep fill" -- "$current")) && return ;;
    --check)
      local kinds="bundle symbols hidden-names version start texts unknown-commands no-selection languages runs frames edits calls entries selection answers document alerts aliases missing failing random"
      [[ $command == scan ]] && kinds="empty bar-rest look-alike hidden-rest surplus-voices"
      [[ $command == validate || $command == scan ]] && COMPREPLY=($(compgen -W "$kinds" -- "$current")) && return
      ;;
    --score) _sokrun_scores "$current" && return ;;
    --plugin) _sokrun_bundles "$current" && return ;;
    -o | --output | --html) compopt -o filenames 2>/dev/null; COMPREPLY=($(compgen -f -- "$current")) && return ;;
    --output-dir) _sokrun_bundles "$current" && return ;;
    --measures | --numbers | --staves | --parts | --hide-layer | --allow-hidden | --layers | --without | -j | --jobs | --pictures | \
      --seed | --rounds | --refusals | --timeout) return ;;
  esac
  if [[ $current == -* ]]; then
    # What the command itself says it understands.
    COMPREPLY=($(compgen -W "$("${COMP_WORDS[0]}" "$command" --help 2>/dev/null | grep -oE -e '(^|[ ,])--?[a-z][a-z-]*' | tr -d ' ,')" -- "$current"))
    return
  fi
  case $command in
    list | info | validate) _sokrun_bundles "$current" ;;
    help) COMPREPLY=($(compgen -W "fill clear run list info validate scan inspect records texts shapes" -- "$current")) ;;
    version) ;;
    inspect)
      _sokrun_scores "$current"
      ((COMP_CWORD > 2)) && COMPREPLY+=($(compgen -W "frames records texts shapes" -- "$current"))
      ;;
    *) _sokrun_scores "$current" ;;
  esac
}

complete -F _sokrun sokrun
