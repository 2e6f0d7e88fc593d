list(APPEND CORE_SOURCES exchange/Elixir.cpp)
list(APPEND CORE_SOURCES exchange/BankFile.cpp exchange/PaymentTitles.cpp)
list(APPEND UI_SOURCES exchange/frmDoBanku.cpp exchange/SentMarks.cpp)
list(APPEND CORE_SOURCES exchange/ExportFile.cpp exchange/FirmImport.cpp)
list(APPEND UI_SOURCES exchange/frmImport.cpp exchange/frmImportFirm.cpp)
list(APPEND CORE_SOURCES exchange/ServerDocument.cpp exchange/clsSerwer.cpp exchange/basKONTORIAN.cpp)
# The automation class on the session bus: its adaptor is generated from the interface
# description in data/, and the service file that lets the bus start the program is
# configured into the build tree (dbus-1/services/), naming the program built there.
list(APPEND UI_SOURCES exchange/clsSerwerBus.cpp exchange/Automation.cpp)
set(ZLECANKI_DBUS_INTERFACE ${PROJECT_SOURCE_DIR}/data/pl.kontorian.Zlecanki.clsSerwer.xml)
if(NOT ZLECANKI_CORE_ONLY)
  qt_add_dbus_adaptor(ZLECANKI_DBUS_ADAPTOR ${ZLECANKI_DBUS_INTERFACE} exchange/clsSerwerBus.h clsSerwerBus
                      clsSerwerAdaptor clsSerwerAdaptor)
  list(APPEND UI_SOURCES ${ZLECANKI_DBUS_ADAPTOR})
endif()
set(ZLECANKI_AUTOMATION_EXEC ${CMAKE_CURRENT_BINARY_DIR}/zlecanki)
configure_file(${PROJECT_SOURCE_DIR}/data/pl.kontorian.Zlecanki.service.in
               ${PROJECT_BINARY_DIR}/dbus-1/services/pl.kontorian.Zlecanki.service @ONLY)
set_property(SOURCE exchange/clsSerwerBus.cpp APPEND PROPERTY INCLUDE_DIRECTORIES ${CMAKE_CURRENT_BINARY_DIR})
