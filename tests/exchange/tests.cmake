zlecanki_test(tst_exportfile exchange/tst_exportfile.cpp)
zlecanki_ui_test(tst_importwindows exchange/tst_importwindows.cpp)
zlecanki_bus_test(tst_automation exchange/tst_automation.cpp)
zlecanki_server_run(tst_automation)
zlecanki_test(tst_bankfile exchange/tst_bankfile.cpp)
zlecanki_ui_test(tst_bankwindows exchange/tst_bankwindows.cpp)
# Two automation copies, each on a bus of its own, writing one firm on the run's PostgreSQL
# server at once (skipped without one).
zlecanki_bus_test(tst_sharedfirm exchange/tst_sharedfirm.cpp)
if(TARGET tst_sharedfirm)
  set_property(TEST tst_sharedfirm APPEND PROPERTY ENVIRONMENT ZLECANKI_TEST_SERVER=1)
  set_property(TEST tst_sharedfirm APPEND PROPERTY LABELS server)
  set_tests_properties(tst_sharedfirm PROPERTIES TIMEOUT 300)
endif()
