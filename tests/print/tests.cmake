zlecanki_test(tst_printengine print/tst_printengine.cpp)
zlecanki_ui_test(tst_preview print/tst_preview.cpp)
zlecanki_test(tst_slips print/tst_slips.cpp)
zlecanki_test(tst_printcommand print/tst_printcommand.cpp)
