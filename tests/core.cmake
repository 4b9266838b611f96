# What all tools share, a class or a set of functions each.
foreach(name IN ITEMS
    tst_contentkind
    tst_geometrywalker
    tst_shortlines
    tst_text)
  kpgeometry_add_test(${name} LIBRARIES kpgeomcore)
endforeach()
