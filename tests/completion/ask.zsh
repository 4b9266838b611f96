# SPDX-License-Identifier: MIT
# Prints of each line what it may go on with: FUNCTION LINE...
# Only a shell that reads from a terminal completes, and so this one starts another.
if [[ -o interactive ]]; then
    fpath=($1:h $fpath)
    shift
    lines=("$@")
    autoload -Uz compinit
    compinit -D -u
    compadd() {
        local -a hits
        builtin compadd -A hits "$@"
        found+=($hits)
        builtin compadd "$@"
    }
    zle -C ask list-choices _main_complete
    zle-line-init() {
        local line
        for line in $lines; do
            found=()
            BUFFER=$line
            CURSOR=$#BUFFER
            zle ask
            print -r -- $'\n'ANSWER$'\t'$line$'\t'$found
        done
        exit
    }
    zle -N zle-line-init
else
    zmodload zsh/zpty
    zpty asked zsh -f -i
    zpty -w asked "source ${(q)ZSH_ARGZERO} ${(q)@}"
    while zpty -r asked text; do
        print -rn -- $text
    done
fi
