#!/usr/bin/env bash
# run.sh PROGRAM SOURCE TRANSCRIPT: runs the commands of a transcript, which follow "$ ", and compares their output, both
# streams and "[STATUS]" unless it is 0, with the lines after them. Lines that begin with "## " are remarks. In a page (*.md)
# the blocks "```console" are the transcript, without the status. SOURCE is the source tree; UPDATE=1 writes the transcript
# instead.
set -euo pipefail
program=$(realpath "$1") source=$(realpath "$2") transcript=$(realpath "$3")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin" "$work/run"
ln -s "$program" "$work/bin/toveng"
ln -s "$source/examples" "$work/run/examples"
export PATH=$work/bin:$PATH LC_ALL=C
cd "$work/run"

replay() {
  local line status copy=1
  [[ $transcript == *.md ]] && copy=0
  while IFS= read -r line; do
    case $line in
      '```console') copy=1 ;;
      '```') copy=0 ;;
      '$ '*)
        printf '%s\n' "$line"
        status=0
        bash -c "${line#??}" 2>&1 </dev/null || status=$?
        [[ $status -eq 0 || $transcript == *.md ]] || printf '[%s]\n' "$status"
        ;;
      '## '*) [ "$copy" -eq 0 ] || printf '%s\n' "$line" ;;
    esac
  done <"$transcript"
}

expected() {
  if [[ $transcript == *.md ]]; then sed -n '/^```console$/,/^```$/{/^```/!p}' "$transcript"; else cat "$transcript"; fi
}

replay >"$work/actual"
if [ -n "${UPDATE:-}" ]; then cp "$work/actual" "$transcript"; fi
diff -a <(expected) "$work/actual"
