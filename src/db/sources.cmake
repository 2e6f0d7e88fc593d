list(APPEND CORE_SOURCES
  db/FirmDatabase.cpp
  db/Structure.cpp
  db/MdbReader.cpp
  db/MdbProcess.cpp
  db/MdbConversion.cpp
  db/ImportMdbCommand.cpp
)
