# Compiler settings that every target of this project shares.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_UNITY_BUILD_BATCH_SIZE 12)  # files in a group, where they are compiled in groups

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

add_library(MorquilOptions INTERFACE)
target_include_directories(MorquilOptions INTERFACE ${PROJECT_SOURCE_DIR}/library)
target_compile_options(MorquilOptions INTERFACE
    # Lines and names for backtraces; full debug information makes every build a third slower.
    $<$<AND:$<CONFIG:RelWithDebInfo>,$<NOT:$<BOOL:$<TARGET_PROPERTY:MORQUIL_UNOPTIMISED>>>>:-g1>
    -Wall -Wextra -Wpedantic -Wshadow -Wformat=2 -Wconversion -Wsign-conversion -Woverloaded-virtual
    # In a unity build a parameter in one file may have the name of something at the top level of another.
    $<$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>:-Wno-shadow>)
if(MORQUIL_STRICT)
    target_compile_options(MorquilOptions INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Locks and the members they guard are checked at compile time.
    target_compile_options(MorquilOptions INTERFACE -Wthread-safety -Wthread-safety-beta)
endif()
if(WIN32)
    # On this target the compiler relies on the registers that an inline function in the same file leaves untouched,
    # although the linker may choose another file's copy, which was compiled differently.
    target_compile_options(MorquilOptions INTERFACE -fno-ipa-ra)
    target_compile_definitions(MorquilOptions INTERFACE
        WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 _WINSOCK_DEPRECATED_NO_WARNINGS)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        # Decimals are rounded as on every other system, not kept in wider registers. A host's stack is aligned to four
        # bytes only, and these instructions need sixteen.
        target_compile_options(MorquilOptions INTERFACE -msse2 -mfpmath=sse -mstackrealign)
    endif()
endif()
if(NOT MORQUIL_SANITIZE)
    # A remaining overflow ends the process at once instead of continuing with a broken stack. The checked functions need
    # an optimised build, and tests are not optimised.
    target_compile_options(MorquilOptions INTERFACE
        -fstack-protector-strong
        $<$<NOT:$<BOOL:$<TARGET_PROPERTY:MORQUIL_UNOPTIMISED>>>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
    target_link_options(MorquilOptions INTERFACE -fstack-protector-strong)
endif()
if(MORQUIL_SANITIZE)
    target_compile_options(MorquilOptions INTERFACE
        -fsanitize=${MORQUIL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        # A host's objects need not be C++: an observer may be a plain table of functions, called by their slots.
        -fno-sanitize=vptr $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)
    if(WIN32)
        # No run-time library can report here, so undefined behaviour ends the program.
        target_compile_options(MorquilOptions INTERFACE -fsanitize-undefined-trap-on-error)
    else()
        target_link_options(MorquilOptions INTERFACE -fsanitize=${MORQUIL_SANITIZE})
    endif()
endif()
