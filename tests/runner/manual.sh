#!/usr/bin/env bash
# The manual and the completions know every command and every option that --help shows, and no others.
# Usage: manual.sh SOKRUN SOURCE_DIR
set -euo pipefail
export LC_ALL=C  # i is between a and z, which it is not in Turkish
sokrun=$1 manual=$2/docs/sokrun.1 zsh=$2/host/runner/commands/completions/_sokrun bash=$2/host/runner/commands/completions/sokrun.bash
failed=0
# same WHAT FILE FILE: complains of what stands in one alone.
same() {
  diff "$2" "$3" >/dev/null && return
  echo "$1: < only in --help, > only there" >&2
  diff "$2" "$3" | grep '^[<>]' >&2
  failed=1
}
long_options() { grep -oE -e '--[a-z][a-z-]*' | sort -u; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

commands=$("$sokrun" --help | sed -n '/^Commands:/,/^$/p' | sed -n 's/^  \([a-z]*\) .*/\1/p')
sort <<<"$commands" >"$scratch/commands"
{
  "$sokrun" --help | grep -oE '^ +-[^ ]*' # its examples are not about itself
  for command in $commands; do "$sokrun" "$command" --help | sed -n '1,/^Examples\?:/p' | grep -oE '^ +-[^ ]*'; done
} | long_options >"$scratch/options"

# The manual: options behind \- signs, in whatever fonts; verovio's installer has one of its own.
sed 's/\\-/-/g; s/\\f[A-Z]//g; /^\.BR "npm install/d' "$manual" | long_options >"$scratch/manual"
same "$manual" "$scratch/options" "$scratch/manual"
for command in $commands; do
  grep -qE "(^|[^a-z-])$command([^a-z-]|$)" "$manual" || { echo "$manual: no word of $command" >&2; failed=1; }
done

long_options <"$zsh" >"$scratch/zsh"
same "$zsh" "$scratch/options" "$scratch/zsh"
sed -n "/^commands=(/,/^)/s/^  '\([a-z]*\):.*/\1/p" "$zsh" | sort >"$scratch/zsh-commands"
same "$zsh" "$scratch/commands" "$scratch/zsh-commands"

# The completion for bash asks --help for options itself, and must know those whose values it completes.
sed -n 's/.*compgen -W "\([a-z ]*\) --help.*/\1/p' "$bash" | tr ' ' '\n' | sort >"$scratch/bash-commands"
same "$bash" "$scratch/commands" "$scratch/bash-commands"
grep -oE -e '--[a-z][a-z-]*' "$bash" | grep -vxFf "$scratch/options" >&2 && failed=1
exit $failed
