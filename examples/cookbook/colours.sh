# SPDX-License-Identifier: MIT
# Tries transforms of a colour, and draws a table of tints and shades.

# [colours]
kpgeom colour '#4472c4' shade=0.5 lumMod=0.75
kpgeom colour 4472c4 d9822b --swatches theme.png >/dev/null
# [colours]
ls
