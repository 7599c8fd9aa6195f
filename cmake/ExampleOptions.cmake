# The examples' own CMakeLists.txt knows nothing of this tree, since people copy it. Here they are built with the
# warnings and the sanitizers of everything else all the same.
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
