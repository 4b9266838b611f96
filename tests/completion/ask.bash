# SPDX-License-Identifier: MIT
# Prints of each line what it may go on with: SCRIPT LINE...
. /usr/share/bash-completion/bash_completion
. "$1"
shift

# Works in a completion alone.
compopt() { :; }

for line in "$@"; do
    # As the shell breaks it.
    words=${line//=/ = }
    COMP_WORDS=($words)
    [[ $line == *' ' ]] && COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMP_LINE=$line
    COMP_POINT=${#line}
    COMPREPLY=()
    _kpgeom
    printf 'ANSWER\t%s\t%s\n' "$line" "${COMPREPLY[*]}"
done
