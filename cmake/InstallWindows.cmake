# Files for Windows only: registration for one user, and use without registration. Identifiers come from the interface
# definitions, texts from the code that registers for all users.

# morquil_find_text(VARIABLE FILE REGEX): the text that the single group of REGEX matches.
function(morquil_find_text variable file regex)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${file})
    file(READ ${PROJECT_SOURCE_DIR}/${file} text)
    if(NOT text MATCHES "${regex}")
        message(FATAL_ERROR "${file}: nothing matches ${regex}")
    endif()
    set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

set(identifier "([0-9A-F-]+)")
morquil_find_text(classId api/MorquilAPI.idl "uuid\\(${identifier}\\)[^]]*\\][ \n]*coclass CMorquilDiscovery")
morquil_find_text(libraryId api/MorquilAPI.idl "uuid\\(${identifier}\\)[^]]*\\][ \n]*library MorquilAPI")
morquil_find_text(libraryVersion api/MorquilAPI.idl "version\\(([0-9.]+)\\)[^]]*\\][ \n]*library MorquilAPI")
morquil_find_text(libraryDescription api/MorquilAPI.idl "helpstring\\(\"([^\"]+)\"\\) *\\][ \n]*library MorquilAPI")
morquil_find_text(classDescription library/module/registration.cpp "string_view description = \"([^\"]+)\"")
morquil_find_text(threadingModel library/module/registration.cpp "string_view threadingModel = \"([^\"]+)\"")

# What Windows calls the two kinds of programs.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(assemblyArchitecture amd64)
    set(registryView 64)
    set(typeLibrarySystem win64)
    set(otherTypeLibrarySystem win32)
else()
    set(assemblyArchitecture x86)
    set(registryView 32)
    set(typeLibrarySystem win32)
    set(otherTypeLibrarySystem win64)
endif()

foreach(file IN ITEMS register.cmd unregister.cmd MorquilAPI.assembly.manifest program.exe.manifest)
    set(made ${CMAKE_CURRENT_BINARY_DIR}/packaging/${file})
    if(file MATCHES "cmd$")
        configure_file(packaging/windows/${file}.in ${made} @ONLY NEWLINE_STYLE CRLF)
    else()
        configure_file(packaging/windows/${file}.in ${made} @ONLY)
    endif()
    install(FILES ${made} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime)
endforeach()

if(PROJECT_IS_TOP_LEVEL)
    install(FILES packaging/windows/README.txt DESTINATION . COMPONENT Documentation)
endif()

# One import library for all linkers: Microsoft's expect this name, and GNU's also find it.
set_target_properties(MorquilAPI PROPERTIES IMPORT_PREFIX "" IMPORT_SUFFIX .lib)
