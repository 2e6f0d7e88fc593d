list(APPEND CORE_SOURCES
  reports/ReportCriteria.cpp
  reports/ReportRegister.cpp
  reports/ReportPrintout.cpp
  reports/ReportWorkbook.cpp
  reports/ReportCommand.cpp
)
list(APPEND UI_SOURCES
  reports/PeriodControls.cpp
  reports/frmKryteriaDaty.cpp
  reports/frmraport.cpp
  reports/frmraport_kryteria.cpp
)
