# bash completion for toveng(1)

_toveng() {
  local codes=dropped-line,unknown-command,lost-word,changed-value,mistaken-word,ends-load,unstable-line,missing-name
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]} words=
  if [ "$COMP_CWORD" -eq 1 ]; then
    words='check coverage diff objects format import --help --version'
  else
    case $before in
      --format) [ "$command" = check ] && words='text json sarif' || words='text json' ;;
      --ignore) words=${codes//,/ } ;;
      --match) words='levels local flat' ;;
      --type) words='port pin net cell clock' ;;
      --max) ;;
      *)
        case $word in
          -*)
            case $command in
              check) words='--design --match --ignore --format --max' ;;
              coverage) words='--design --format' ;;
              diff) words='--format' ;;
              objects) words='--design --type --match --constraints' ;;
              format) words='--check --lossy -o' ;;
              import) words='--define --root --time-unit --limit --drop --format -o' ;;
            esac
            words+=' --help --version'
            ;;
        esac
        ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -o default -F _toveng toveng
