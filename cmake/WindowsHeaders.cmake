# Windows' own headers take a second of every file that includes MorquilAPI.h: the library's files share one reading of
# them. Off Windows the header costs nothing, and every file is compiled by itself.
#   morquil_share_windows_headers(TARGET)
function(morquil_share_windows_headers name)
    if(NOT WIN32)
        return()
    endif()
    if(name STREQUAL "MorquilPlatform")
        target_precompile_headers(${name} PRIVATE <MorquilAPI.h>)
    else()
        target_precompile_headers(${name} REUSE_FROM MorquilPlatform)
    endif()
endfunction()
