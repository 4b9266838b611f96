# SPDX-License-Identifier: MIT
# Puts a soft shadow under a drawing.

# [softshadow]
kpgeom render examples/documents/callout.xml --background none -o callout.png
kpgeom blur callout.png -r 6 --shadow '3,5,#80000000' -o shadow.png
# [softshadow]
ls
