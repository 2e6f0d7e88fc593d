zlecanki_test(tst_documents documents/tst_documents.cpp)
# Two processes write 1,500 documents each into one firm.
set_tests_properties(tst_documents PROPERTIES TIMEOUT 300)
zlecanki_ui_test(tst_documentwindows documents/tst_documentwindows.cpp)
zlecanki_ui_test(tst_frmprzelew documents/tst_frmprzelew.cpp)
zlecanki_ui_test(tst_frmprzegladanie documents/tst_frmprzegladanie.cpp)
zlecanki_ui_test(tst_scheduledwindows documents/tst_scheduledwindows.cpp)
zlecanki_ui_test(tst_zbiorowka documents/tst_zbiorowka.cpp)
