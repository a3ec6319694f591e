# Completion of vortime for bash.
_vortime() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]} words=
  local run="--json --quiet --trace --plot --force --noise --strict --step-limit --date --help"
  case $previous in
    --trace | --plot | --leap-file) mapfile -t COMPREPLY < <(compgen -f -- "$current"); return ;;
    --from | --to) mapfile -t COMPREPLY < <(compgen -W "week iso mjd unix fat gps utc local" -- "$current"); return ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    words="replay watch now convert leap zone --help --version"
  else
    case $command in
      replay) words="$run --pc-offset --pc-drift --jitter --seed --leap-file --leap-library --progress --no-progress" ;;
      watch) words="$run --baud --set-clock --trust --max-step gpsd://" ;;
      now) words="--json --help" ;;
      convert) words="--from --to --json --help" ;;
      leap) words="show check load --force --json --help" ;;
      zone) words="list current show map resolve --bias --json --help" ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  case $command in
    replay | watch | leap) [ ${#COMPREPLY[@]} -gt 0 ] && [ -n "$current" ] || mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- "$current") ;;
  esac
}
complete -o filenames -F _vortime vortime
