# SPDX-License-Identifier: MIT
# Looks into the recent files of a program, and pins one.

mkdir configuration

# [lists]
kpgeom recent --config configuration add /plans/house.x /plans/garden.x
kpgeom recent --config configuration pin 1
kpgeom recent --config configuration list | sed -n '/^files/,/^$/p'
# [lists]
