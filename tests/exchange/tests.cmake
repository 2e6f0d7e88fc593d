zlecanki_test(tst_elixir exchange/tst_elixir.cpp)
zlecanki_test(tst_exportfile exchange/tst_exportfile.cpp)
zlecanki_ui_test(tst_importwindows exchange/tst_importwindows.cpp)
zlecanki_bus_test(tst_automation exchange/tst_automation.cpp)
