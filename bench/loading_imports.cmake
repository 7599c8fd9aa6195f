# Writes a C file that uses every function that a DLL imports, and nothing else.
#   cmake -DOBJDUMP=... -DLIBRARY=x.dll -DOUTPUT=imports.c -P loading_imports.cmake
execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
# Lines of the import tables: address, ordinal or hint, name.
string(REGEX MATCHALL "\n\t[0-9a-f]+\t +[0-9]+ +[A-Za-z_][A-Za-z_0-9]*" lines "${headers}")
set(declarations "")
set(entries "")
foreach(line IN LISTS lines)
    string(REGEX REPLACE ".*[ \t]" "" name "${line}")
    string(APPEND declarations "extern char __imp_${name}[];\n")
    string(APPEND entries "    __imp_${name},\n")
endforeach()
if(entries STREQUAL "")
    message(FATAL_ERROR "${LIBRARY}: no imports were found")
endif()
file(WRITE ${OUTPUT}
    "${declarations}__declspec(dllexport) char* const imports[] = {\n${entries}};\n")
