list(APPEND CORE_SOURCES exchange/Elixir.cpp)
