# SPDX-License-Identifier: MIT
# Converts a length, and looks up a page.

# [sizes]
kpgeom units 210 mm in
kpgeom units --dpi 120 1 in px # inches follow the screen
kpgeom pages | grep 'A4'
# [sizes]
