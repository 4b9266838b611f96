# SPDX-License-Identifier: MIT
# Prints of each line what it may go on with: SCRIPT LINE...
source $argv[1]
set -e argv[1]
for line in $argv
    printf 'ANSWER\t%s\t%s\n' $line (complete -C $line | string replace -r '\t.*' '' | string join ' ')
end
