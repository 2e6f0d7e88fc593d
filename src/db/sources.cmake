list(APPEND CORE_SOURCES
  db/FirmDatabase.cpp
  db/Structure.cpp
)
