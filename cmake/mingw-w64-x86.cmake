# Cross-compiles for 32-bit Windows.
set(MORQUIL_MINGW_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
