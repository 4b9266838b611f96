# SPDX-License-Identifier: MIT
# Says which files are no longer what they were.

cp examples/documents/arrow.xml examples/documents/pill.xml .

# [changed]
kpgeom digest arrow.xml pill.xml >digests
echo '<!-- changed -->' >>pill.xml
kpgeom digest --check digests || test $? = 1
# [changed]
