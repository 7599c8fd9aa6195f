# Finds widl, the interface definitions that it imports, and the type library that all others refer to.
find_program(MORQUIL_WIDL NAMES x86_64-w64-mingw32-widl widl DOC "The interface definition compiler")
find_path(MORQUIL_WIDL_INCLUDE oaidl.idl NO_CMAKE_FIND_ROOT_PATH
    HINTS /usr/include/wine/wine/windows /usr/include/wine/windows /usr/share/mingw-w64/include
    DOC "The folder of oaidl.idl")
file(GLOB morquilStdoleDirs /usr/lib/*/wine/x86_64-windows /usr/lib/wine/x86_64-windows)
find_path(MORQUIL_STDOLE stdole2.tlb NO_CMAKE_FIND_ROOT_PATH
    HINTS ${morquilStdoleDirs}
    DOC "The folder of stdole2.tlb")

if(NOT MORQUIL_WIDL)
    message(FATAL_ERROR "widl was not found: install Debian's mingw-w64-tools (or set MORQUIL_WIDL)")
elseif(NOT MORQUIL_WIDL_INCLUDE)
    message(FATAL_ERROR "oaidl.idl was not found: install Debian's libwine-dev (or set MORQUIL_WIDL_INCLUDE)")
elseif(NOT MORQUIL_STDOLE)
    message(FATAL_ERROR "stdole2.tlb was not found: install Debian's wine64 and libwine (or set MORQUIL_STDOLE)")
endif()
