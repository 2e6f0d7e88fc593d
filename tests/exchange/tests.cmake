zlecanki_test(tst_elixir exchange/tst_elixir.cpp)
zlecanki_bus_test(tst_automation exchange/tst_automation.cpp)
