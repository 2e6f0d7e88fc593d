list(APPEND CORE_SOURCES
  app/AppState.cpp
  app/CommandLine.cpp
  app/DateText.cpp
  app/Dialogs.cpp
  app/Firm.cpp
  app/Help.cpp
  app/Messages.cpp
  app/Money.cpp
  app/SettingsStore.cpp
  app/SingleInstance.cpp
  app/StartupSettings.cpp
  app/UserOptions.cpp
)
list(APPEND UI_SOURCES
  app/Main.cpp
  app/WidgetDialogs.cpp
  app/WindowUtil.cpp
  app/frmFirmaOpen.cpp
  app/frmUstawienia.cpp
  app/frmglowna.cpp
  app/frmglowna_img.cpp
  app/frmhotline.cpp
  app/frmo.cpp
  app/frmstart.cpp
)
