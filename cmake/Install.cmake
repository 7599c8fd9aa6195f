# What "cmake --install" copies, and where to. All paths are relative to the prefix, and installed files find each other
# by relative paths, so the whole tree may be moved. Components: Runtime, Development, Tools, Documentation.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headerFolder ${CMAKE_INSTALL_INCLUDEDIR}/morquilapi)
set(dataFolder ${CMAKE_INSTALL_DATADIR}/morquilapi)
set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/MorquilAPI)
set(interfaces $<TARGET_PROPERTY:MorquilApiFiles,BINARY_DIR>)

# ---- The library, its headers, and the CMake package -------------------------------------------------------------

set_target_properties(MorquilApi PROPERTIES EXPORT_NAME Interfaces)
set_target_properties(MorquilCpp PROPERTIES EXPORT_NAME Cpp)

install(TARGETS MorquilAPI EXPORT MorquilAPITargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
install(TARGETS MorquilApi MorquilCpp EXPORT MorquilAPITargets INCLUDES DESTINATION ${headerFolder})
if(WIN32)
    set_target_properties(MorquilIdentifiers PROPERTIES EXPORT_NAME Identifiers)
    install(TARGETS MorquilIdentifiers EXPORT MorquilAPITargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
endif()
install(EXPORT MorquilAPITargets NAMESPACE MorquilAPI:: DESTINATION ${packageFolder} COMPONENT Development)

configure_package_config_file(cmake/MorquilAPIConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/MorquilAPIConfig.cmake
    INSTALL_DESTINATION ${packageFolder}
    PATH_VARS dataFolder
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/MorquilAPIConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/MorquilAPIConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/MorquilAPIConfigVersion.cmake
    DESTINATION ${packageFolder} COMPONENT Development)

install(FILES ${interfaces}/MorquilAPI.h ${interfaces}/MorquilDelivery.h api/MorquilEntry.h
    DESTINATION ${headerFolder} COMPONENT Development)
install(FILES bindings/cpp/morquil.hpp DESTINATION ${headerFolder} COMPONENT Development)
install(DIRECTORY bindings/cpp/morquil DESTINATION ${headerFolder} COMPONENT Development)
install(FILES $<TARGET_PROPERTY:MorquilCppFiles,BINARY_DIR>/morquil/interfaces.hpp
    DESTINATION ${headerFolder}/morquil COMPONENT Development)
if(NOT WIN32)
    install(FILES library/platform/posix/MorquilCom.h DESTINATION ${headerFolder} COMPONENT Development)
endif()
install(FILES api/MorquilAPI.idl api/MorquilDelivery.idl ${interfaces}/MorquilAPI.tlb
    DESTINATION ${dataFolder} COMPONENT Development)
if(TARGET MorquilDescriptionFile)
    install(FILES ${MORQUIL_DESCRIPTION_FILE} DESTINATION ${dataFolder} COMPONENT Development)
endif()

# ---- pkg-config ---------------------------------------------------------------------------------------------------

if(NOT WIN32)
    set(pkgConfigFolder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    file(RELATIVE_PATH pkgConfigPrefix /prefix/${pkgConfigFolder} /prefix)
    string(REGEX REPLACE "/$" "" pkgConfigPrefix ${pkgConfigPrefix})
    configure_file(cmake/morquilapi.pc.in ${CMAKE_CURRENT_BINARY_DIR}/morquilapi.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/morquilapi.pc DESTINATION ${pkgConfigFolder} COMPONENT Development)
endif()

# ---- Tools --------------------------------------------------------------------------------------------------------

if(MORQUIL_TOOLS)
    install(TARGETS morquilctl morquil-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
    if(NOT WIN32)
        file(RELATIVE_PATH libraryFromTools /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
        set_target_properties(morquilctl PROPERTIES INSTALL_RPATH $ORIGIN/${libraryFromTools})
    endif()
    if(TARGET morquil-gateway)
        install(TARGETS morquil-gateway RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
        set_target_properties(morquil-gateway PROPERTIES INSTALL_RPATH $ORIGIN/${libraryFromTools})
    endif()
    # "scripts/build-docs.sh --man" makes the man pages; without it there are none.
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Tools
        OPTIONAL FILES_MATCHING PATTERN "*.1")
endif()

# ---- Examples, and files for Windows only -------------------------------------------------------------------------

install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Documentation)
if(WIN32)
    include(${CMAKE_CURRENT_LIST_DIR}/InstallWindows.cmake)
endif()
