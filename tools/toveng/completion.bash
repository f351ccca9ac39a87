# bash completion for toveng(1)

_toveng() {
  local codes='dropped-line unknown-command lost-word changed-value mistaken-word ends-load unstable-line missing-name
    no-objects no-clock bad-clock bad-value undefined-clock redefined-clock repeated overridden min-over-max misspelt-query
    variable-name continued-line misspelt-command'
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]} words=
  if [ "$COMP_CWORD" -eq 1 ]; then
    words='check coverage diff objects format import serve --help --version'
  else
    case $before in
      --format) [ "$command" = check ] && words='text json sarif' || words='text json' ;;
      --ignore) words=${codes/ends-load/} ;;
      --select) words=$codes ;;
      --match) words='levels local flat' ;;
      --color) words='auto always never' ;;
      --type) words='port pin net cell clock' ;;
      --time-unit) words='ns ps us' ;;
      --max | --limit | --define | --drop) ;;
      *)
        case $word in
          -*)
            case $command in
              check) words='--design --match --each --select --ignore --baseline --all --format --color --max' ;;
              coverage) words='--design --format' ;;
              diff) words='--format' ;;
              objects) words='--design --type --match --constraints --format' ;;
              format) words='--check --lossy -o' ;;
              import) words='--define --root --time-unit --limit --drop --format -o' ;;
              serve) words='--design --match --select --ignore --log --stdio' ;;
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
