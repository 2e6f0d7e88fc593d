list(APPEND CORE_SOURCES
  print/PrintEngine.cpp
  print/PrintSurface.cpp
)
list(APPEND UI_SOURCES
  print/frmPrintkopie.cpp
)
list(APPEND UI_SOURCES
  print/frmDrukPreview.cpp
)
list(APPEND UI_SOURCES
  print/PrinterSurface.cpp
)
