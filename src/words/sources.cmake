list(APPEND CORE_SOURCES words/Slownie.cpp)
