zlecanki_ui_test(tst_firm app/tst_firm.cpp)
zlecanki_ui_test(tst_mainwindow app/tst_mainwindow.cpp)
zlecanki_bus_test(tst_session app/tst_session.cpp)

# The real program driven through the accessibility bus, as a screen reader would (skips
# where Xvfb or the accessibility bus is missing).
if(NOT ZLECANKI_CORE_ONLY)
  add_test(NAME atspi_walk COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/app/atspi-test.sh $<TARGET_FILE:zlecanki>)
  set_tests_properties(atspi_walk PROPERTIES LABELS "ui;atspi" TIMEOUT 150
                       SKIP_REGULAR_EXPRESSION "atspi-test: skipped")
endif()
