# SPDX-License-Identifier: MIT
# Makes outlines of an SVG icon, and looks at them.

# [icon]
kpgeom convert examples/pictures/fasteners.svg -o fasteners.xml
kpgeom svg --names --size 24x24 --precision 1 --index 1 --index 2 fasteners.xml
kpgeom render fasteners.xml --index 1 --size 24x24 -o nut.svg
# [icon]
ls
