list(APPEND CORE_SOURCES validation/Sprawdz.cpp)
list(APPEND UI_SOURCES validation/FieldCheck.cpp)
