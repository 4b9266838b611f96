# SPDX-License-Identifier: MIT
# Binds one drawing to four margins, as a nine-slice picture: corners keep their size.

# [margins]
kpgeom bind examples/pictures/pennant.svg --slices 44,44,44,44 -o pennant.xml
kpgeom svg --precision 0 pennant.xml
kpgeom svg --precision 0 --size 480x160 pennant.xml
# [margins]
