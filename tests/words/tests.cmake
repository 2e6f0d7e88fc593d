zlecanki_test(tst_slownie words/tst_slownie.cpp)
