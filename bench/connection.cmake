# A device on the network: how long operations take, and what a thousand devices cost. The device of these benchmarks is
# a separate program that must be running; it is a native program even when the host runs under Wine.
add_library(MorquilBenchConnection STATIC
    connection_console.cpp
    connection_host.cpp
    connection_texts.cpp
    corpus.cpp
    raw_client.cpp)
target_link_libraries(MorquilBenchConnection PUBLIC MorquilOptions MorquilApi MorquilBenchSupport
    PRIVATE MorquilAPI MorquilSimulator)
if(WIN32)
    target_link_libraries(MorquilBenchConnection PUBLIC ws2_32)
else()
    morquil_benchmark(device device_process.cpp)
    target_link_libraries(morquil-bench-device PRIVATE MorquilBenchConnection)
endif()

morquil_benchmark(connection connection.cpp)
target_link_libraries(morquil-bench-connection PRIVATE MorquilBenchConnection)

morquil_benchmark(echo echo.cpp)
target_link_libraries(morquil-bench-echo PRIVATE MorquilBenchConnection MorquilProtocol)

morquil_benchmark(receipts receipts.cpp)
target_link_libraries(morquil-bench-receipts PRIVATE MorquilBenchConnection)

if(NOT WIN32)
    # For python_layer.py and dotnet_layer.py.
    morquil_benchmark(apply apply.cpp)
    target_link_libraries(morquil-bench-apply PRIVATE MorquilCpp)
    set_target_properties(morquil-bench-apply PROPERTIES CXX_STANDARD 17)
    if(TARGET MorquilDotnetAssembly)
        set(assembly ${PROJECT_BINARY_DIR}/bindings/dotnet/Morquil.dll)
        set(program ${CMAKE_CURRENT_BINARY_DIR}/dotnet/apply.exe)
        add_custom_command(
            OUTPUT ${program}
            COMMAND ${CMAKE_COMMAND} -E make_directory dotnet
            COMMAND ${MORQUIL_MCS} -nologo -optimize -r:${assembly} -out:${program}
                    ${CMAKE_CURRENT_SOURCE_DIR}/apply.cs
            COMMAND ${CMAKE_COMMAND} -E copy ${assembly} dotnet
            DEPENDS apply.cs ${assembly} VERBATIM)
        add_custom_target(morquil-bench-apply-dotnet DEPENDS ${program})
        add_dependencies(morquil-bench-apply-dotnet MorquilDotnetAssembly)
        add_dependencies(morquil-bench morquil-bench-apply-dotnet)
    endif()
endif()

morquil_benchmark(echo-output echo_output.cpp)
target_link_libraries(morquil-bench-echo-output PRIVATE MorquilBenchConnection)

if(WIN32)
    set(system windows)
else()
    set(system posix)
endif()
morquil_benchmark(devices
    devices.cpp devices_raw_${system}.cpp ${PROJECT_SOURCE_DIR}/tests/kit/process_counts_${system}.cpp)
target_link_libraries(morquil-bench-devices PRIVATE MorquilBenchConnection)

if(WIN32)
    # The library as shipped, and a plain one with the same imports.
    set(stripped morquil-bench-stripped.dll)
    set(imports ${CMAKE_CURRENT_BINARY_DIR}/imports.c)
    add_custom_command(
        OUTPUT ${stripped}
        COMMAND ${CMAKE_STRIP} -o ${stripped} $<TARGET_FILE:MorquilAPI>
        DEPENDS MorquilAPI VERBATIM)
    add_custom_command(
        OUTPUT ${imports}
        COMMAND ${CMAKE_COMMAND} -DOBJDUMP=${CMAKE_OBJDUMP} -DLIBRARY=$<TARGET_FILE:MorquilAPI> -DOUTPUT=${imports}
                -P ${CMAKE_CURRENT_SOURCE_DIR}/loading_imports.cmake
        DEPENDS MorquilAPI loading_imports.cmake VERBATIM)
    add_library(morquil-bench-plain SHARED ${imports})
    target_link_libraries(morquil-bench-plain PRIVATE ws2_32 ole32 oleaut32 advapi32)
    target_link_options(morquil-bench-plain PRIVATE -static -s)
    set_target_properties(morquil-bench-plain PROPERTIES PREFIX "")

    morquil_benchmark(loading loading.cpp ${stripped})
    target_compile_definitions(morquil-bench-loading PRIVATE
        MORQUIL_STRIPPED_LIBRARY="${stripped}" MORQUIL_PLAIN_LIBRARY="morquil-bench-plain.dll")
    add_dependencies(morquil-bench-loading morquil-bench-plain)

    # Programs look for the library in their own folder.
    add_custom_command(TARGET morquil-bench-connection POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E copy_if_different
                $<TARGET_FILE:MorquilAPI> $<TARGET_FILE_DIR:morquil-bench-connection>)
endif()
