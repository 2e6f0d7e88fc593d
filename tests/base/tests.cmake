zlecanki_test(tst_sharedtypes base/tst_sharedtypes.cpp)
zlecanki_test(tst_settings base/tst_settings.cpp)
