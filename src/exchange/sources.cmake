list(APPEND CORE_SOURCES exchange/Elixir.cpp)
list(APPEND CORE_SOURCES exchange/ExportFile.cpp exchange/FirmImport.cpp)
list(APPEND UI_SOURCES exchange/frmImport.cpp exchange/frmImportFirm.cpp)
