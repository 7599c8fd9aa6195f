# The examples' own CMakeLists.txt does not depend on this tree, because users copy it. Here they are nevertheless built
# with the same warnings and sanitizers as everything else.
foreach(kind IN ITEMS COMPILE LINK)
    get_target_property(options MorquilOptions INTERFACE_${kind}_OPTIONS)
    if(options)
        list(REMOVE_ITEM options -Woverloaded-virtual)  # not for C
        if(kind STREQUAL "COMPILE")
            add_compile_options(${options})
        else()
            add_link_options(${options})
        endif()
    endif()
endforeach()
