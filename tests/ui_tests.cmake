zlecanki_test(tst_mainwindow app/tst_mainwindow.cpp LIBS zlecanki_ui LABELS ui)
zlecanki_test(tst_startup app/tst_startup.cpp LABELS ui)
add_dependencies(tst_startup zlecanki)
add_dependencies(tst_firm zlecanki)
add_custom_command(TARGET tst_mainwindow POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E copy_if_different
          ${PROJECT_SOURCE_DIR}/src/app/help/zlecanki.htm $<TARGET_FILE_DIR:tst_mainwindow>/zlecanki.htm)
