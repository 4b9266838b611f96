# SPDX-License-Identifier: MIT
# Compares documents by meaning, and shows a change in version control line by line.

sed 's/P="0.3"/P="0.25"/' examples/documents/arrow.xml >narrow.xml

# [diff]
kpgeom diff examples/documents/arrow.xml narrow.xml || test $? = 1 # 1: they differ
# [diff]

git init -q drawings
cd drawings
cp ../examples/documents/arrow.xml .

# [git]
echo '*.xml diff=kpgeom' >.gitattributes
git config diff.kpgeom.textconv "kpgeom normalize"
git add .
cp ../narrow.xml arrow.xml
git diff -U0
# [git]
