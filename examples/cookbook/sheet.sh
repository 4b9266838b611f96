# SPDX-License-Identifier: MIT
# Draws shapes in several boxes at once: as a picture, and as a sheet with captions.

# [sheet]
kpgeom render examples/documents/plate.xml -o plate.pdf
kpgeom render examples/documents/*.xml -o pictures/ --format svg
kpgeom render examples/documents/*.xml --sheet --whole-files \
    --size 240x160 --size 160x240 --size 400x120 -o sheet.svg
# [sheet]
ls . pictures
