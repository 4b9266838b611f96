# SPDX-License-Identifier: MIT
# Finds what becomes of a document when it is saved, undone and drawn.

# [findings]
kpgeom check examples/documents/arrow.xml
kpgeom check examples/documents/page.xml || test $? = 3 # 3: done, with warnings
# [findings]
