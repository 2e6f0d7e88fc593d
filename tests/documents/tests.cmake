zlecanki_test(tst_documents documents/tst_documents.cpp)
# Two processes write 1,500 documents each into one firm.
set_tests_properties(tst_documents PROPERTIES TIMEOUT 300)
zlecanki_server_run(tst_documents)
zlecanki_ui_test(tst_documentwindows documents/tst_documentwindows.cpp)
