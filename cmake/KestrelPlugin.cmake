# How a plug-in for the front end is built.

set(KESTREL_PLUGIN_INSTALL_DIR "${CMAKE_INSTALL_LIBDIR}/kestrel/plugins" CACHE STRING
    "Where plug-ins are installed, relative to the prefix")

# kestrel_plugin_code(<target>)
# For code that ends in a plug-in: no symbol is of the unique kind that keeps a library mapped for
# ever, so that unloading really unmaps it.
function(kestrel_plugin_code target)
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
endfunction()

# kestrel_add_plugin(<target> OBJECTS <object library>)
# A loadable module made of an object library. It is written to <build>/plugins, the folder that the
# host searches when it runs from the build tree. Undefined symbols are link errors.
function(kestrel_add_plugin target)
    cmake_parse_arguments(ARG "" "OBJECTS" "" ${ARGN})
    add_library(${target} MODULE)
    target_link_libraries(${target} PRIVATE ${ARG_OBJECTS})
    kestrel_target(${target})
    kestrel_plugin_code(${ARG_OBJECTS})
    if(NOT (KESTREL_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
        target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
    set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/plugins")
    install(TARGETS ${target} LIBRARY DESTINATION "${KESTREL_PLUGIN_INSTALL_DIR}")
endfunction()
