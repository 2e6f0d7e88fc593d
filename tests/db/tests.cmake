zlecanki_test(tst_structure db/tst_structure.cpp)
