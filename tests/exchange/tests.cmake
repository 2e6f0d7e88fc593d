zlecanki_test(tst_elixir exchange/tst_elixir.cpp)
zlecanki_test(tst_exportfile exchange/tst_exportfile.cpp)
