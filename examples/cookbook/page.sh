# SPDX-License-Identifier: MIT
# Makes a page on which the box is dragged, by mouse, by touch or with the arrow keys.

# [page]
kpgeom render examples/documents/plate.xml --points -o plate.html
# [page]
ls
grep -qE ' (src|href)=' plate.html || echo "it loads nothing"
