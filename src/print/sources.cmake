list(APPEND CORE_SOURCES
  print/PrintEngine.cpp
  print/PrintSurface.cpp
  print/Slip.cpp
  print/BankSlips.cpp
  print/ZusSlip.cpp
  print/PostalSlips.cpp
  print/CollectiveStatement.cpp
  print/SlipDrivers.cpp
  print/PrinterCalibration.cpp
  print/PaymentQr.cpp
  print/CalibrationPage.cpp
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
list(APPEND UI_SOURCES
  print/PrintCommand.cpp
)
list(APPEND UI_SOURCES
  print/SlipAids.cpp
  print/CalibrationTab.cpp
)
