# SPDX-License-Identifier: MIT
# Writes a shape for office programs, and reads one from them.

# [office]
kpgeom render examples/documents/arrow.xml -o arrow.custgeom.xml
grep '<a:gd ' arrow.custgeom.xml # the rules, as formulas over the width and the height
kpgeom convert arrow.custgeom.xml -o back.xml
kpgeom diff examples/documents/arrow.xml back.xml --quiet || echo "other rates: it counts in EMU"
# [office]
