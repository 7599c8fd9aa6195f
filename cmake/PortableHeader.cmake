# Turns the raw output of widl into one header for every system: outside Windows it includes MorquilCom.h instead of
# Windows' own headers. Run as: cmake -DINPUT=raw.h -DOUTPUT=NAME.h -P PortableHeader.cmake
file(READ "${INPUT}" text)

# Replaces exactly one occurrence; any other number means that widl's output has changed.
function(replace_once old new)
    string(FIND "${text}" "${old}" first)
    string(FIND "${text}" "${old}" last REVERSE)
    if(first EQUAL -1 OR NOT first EQUAL last)
        message(FATAL_ERROR "${INPUT}: expected exactly one \"${old}\"")
    endif()
    string(REPLACE "${old}" "${new}" text "${text}")
    set(text "${text}" PARENT_SCOPE)
endfunction()

replace_once("#ifndef COM_NO_WINDOWS_H\n"
    "#ifndef _WIN32\n#include \"MorquilCom.h\"\n#endif\n\n#ifndef COM_NO_WINDOWS_H\n")
# Interfaces have no virtual destructor: in the binary contract every slot is a method.
replace_once("#ifdef __cplusplus\nextern \"C\" {\n#endif\n"
    "#if (defined(__GNUC__) || defined(__clang__)) && defined(__cplusplus)\n#pragma GCC diagnostic push\n\
#pragma GCC diagnostic ignored \"-Wnon-virtual-dtor\"\n#endif\n
#ifdef __cplusplus\nextern \"C\" {\n#endif\n")
replace_once("#ifdef __cplusplus\n}\n#endif\n"
    "#ifdef __cplusplus\n}\n#endif\n
#if (defined(__GNUC__) || defined(__clang__)) && defined(__cplusplus)\n#pragma GCC diagnostic pop\n#endif\n")
# Hosts may pass any 32-bit number: without a fixed underlying type, a value outside the constants would be undefined in
# C++, and values would compare as unsigned.
if(text MATCHES "#include <oaidl.h>\n")
    replace_once("#include <oaidl.h>\n" "#ifdef _WIN32\n#include <oaidl.h>\n#endif\n")
    replace_once("DEFINE_GUID(LIBID_MorquilAPI"
        "#ifdef __cplusplus\n#define MORQUIL_ENUM_TYPE : int\n#else\n#define MORQUIL_ENUM_TYPE\n#endif\n
DEFINE_GUID(LIBID_MorquilAPI")
endif()
string(REGEX REPLACE "\ntypedef enum ([A-Za-z0-9_]+) {" "\ntypedef enum \\1 MORQUIL_ENUM_TYPE {" text "${text}")
# Found next to this header, whatever the host's include paths are.
if(text MATCHES "#include <MorquilAPI.h>\n")
    replace_once("#include <MorquilAPI.h>\n" "#include \"MorquilAPI.h\"\n")
endif()
# The marshalling prototypes at the end are for proxies, which exist on Windows only.
replace_once("/* Begin additional prototypes for all interfaces */\n" "#ifdef _WIN32\n")
replace_once("/* End additional prototypes */\n" "#endif /* _WIN32 */\n")

# When only comments in the definitions have changed, the header is not rewritten, and nothing is rebuilt.
if(EXISTS "${OUTPUT}")
    file(READ "${OUTPUT}" before)
endif()
if(NOT "${before}" STREQUAL "${text}")
    file(WRITE "${OUTPUT}" "${text}")
endif()
