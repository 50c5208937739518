list(APPEND KRGEL_SOURCES
  algebra/KrGeContext.cpp
)
