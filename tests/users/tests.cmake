zlecanki_ui_test(tst_users users/tst_users.cpp)
