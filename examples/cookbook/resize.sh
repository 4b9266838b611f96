# SPDX-License-Identifier: MIT
# Fits a document to a box of another size.

# [resize]
kpgeom resize examples/documents/arrow.xml --from 240x160 --to 480x160 -o wide.xml
kpgeom svg examples/documents/arrow.xml wide.xml
# [resize]
