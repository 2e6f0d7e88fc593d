# Windows: thin, they gather fields and call the core.
add_library(zlecanki_ui STATIC
  app/Main.cpp
  app/WidgetDialogs.cpp
  app/WindowUtil.cpp
  app/frmFirmaOpen.cpp
  app/frmglowna.cpp
  app/frmglowna_img.cpp
  app/frmhotline.cpp
  app/frmo.cpp
  app/frmstart.cpp
)
target_link_libraries(zlecanki_ui PUBLIC zlecanki_core Qt6::Widgets Qt6::PrintSupport)

add_executable(zlecanki main.cpp)
target_link_libraries(zlecanki PRIVATE zlecanki_ui)

# The help page stands beside the program, where it looks for it.
add_custom_command(TARGET zlecanki POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E copy_if_different
          ${CMAKE_CURRENT_SOURCE_DIR}/app/help/zlecanki.htm $<TARGET_FILE_DIR:zlecanki>/zlecanki.htm)
