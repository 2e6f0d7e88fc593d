list(APPEND CORE_SOURCES validation/Sprawdz.cpp)
list(APPEND UI_SOURCES validation/FieldCheck.cpp)
list(APPEND UI_SOURCES validation/DigitWarnings.cpp)
# Check digits of accounts and identifiers, banks named from accounts.
list(APPEND CORE_SOURCES validation/CheckDigits.cpp validation/BankNames.cpp)
