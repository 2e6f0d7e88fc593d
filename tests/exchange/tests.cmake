zlecanki_test(tst_elixir exchange/tst_elixir.cpp)
