zlecanki_test(tst_reports reports/tst_reports.cpp)
zlecanki_ui_test(tst_reportwindows reports/tst_reportwindows.cpp)
