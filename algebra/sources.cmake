list(APPEND KRGEL_SOURCES
  algebra/KrGeContext.cpp
  algebra/KrGeMatrix2d.cpp
  algebra/KrGeMatrix3d.cpp
  algebra/KrGePlaneOps.cpp
  algebra/KrGePoint2d.cpp
  algebra/KrGePoint3d.cpp
  algebra/KrGeVector2d.cpp
  algebra/KrGeVector3d.cpp
)
