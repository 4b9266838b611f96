# SPDX-License-Identifier: MIT
# Learns the rules of a shape from two drawings of it: a wide one and a tall one.

# [learn]
kpgeom fit examples/drawings/bubble-wide.svg examples/drawings/bubble-tall.svg \
    -o bubble.xml --report report.svg
kpgeom svg --index 2 --size 400x160 bubble.xml # in a box that nobody drew
# [learn]
ls
