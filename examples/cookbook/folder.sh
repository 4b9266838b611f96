# SPDX-License-Identifier: MIT
# Makes documents of all icons below a folder, and keeps its folders.

mkdir -p icons/tools
cp examples/pictures/pennant.svg icons
cp examples/pictures/fasteners.svg icons/tools

# [folder]
kpgeom convert --recursive icons -o outlines/
# [folder]
find outlines -name '*.xml' | sort
