zlecanki_test(tst_base base/tst_base.cpp)
