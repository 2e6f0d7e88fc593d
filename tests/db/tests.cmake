zlecanki_test(tst_structure db/tst_structure.cpp)
zlecanki_test(tst_mdbconversion db/tst_mdbconversion.cpp)
zlecanki_test(tst_server db/tst_server.cpp)
zlecanki_test(tst_firmcopy db/tst_firmcopy.cpp)
