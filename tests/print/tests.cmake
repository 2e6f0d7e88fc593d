zlecanki_test(tst_printengine print/tst_printengine.cpp)
