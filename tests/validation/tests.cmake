zlecanki_test(tst_sprawdz validation/tst_sprawdz.cpp)
zlecanki_ui_test(tst_fieldcheck validation/tst_fieldcheck.cpp)
