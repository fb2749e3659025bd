# How an outlet of the workbench that needs a library is built: as a file of its own, which the
# workbench loads when somebody wants it.

# kestrel_add_outlet(<name> <package> <prefix> SOURCES <file>... MODULE <file>)
# The library kestrel_outlet_<name>_lib of the sources, for the tests, and the loadable module
# kestrel_outlet_<name> in <build>/outlets. Neither where the library of the Debian package is missing:
# where <prefix>_INCLUDE_DIR or <prefix>_LIBRARY is not found.
function(kestrel_add_outlet name package prefix)
    cmake_parse_arguments(ARG "" "MODULE" "SOURCES" ${ARGN})
    if(NOT ${prefix}_INCLUDE_DIR OR NOT ${prefix}_LIBRARY)
        message(WARNING "${package} is missing: the workbench cannot send by ${name}://")
        return()
    endif()
    set(library kestrel_outlet_${name}_lib)
    add_library(${library} STATIC ${ARG_SOURCES})
    target_include_directories(${library} SYSTEM PUBLIC "${${prefix}_INCLUDE_DIR}")
    target_link_libraries(${library} PUBLIC kestrel_sending "${${prefix}_LIBRARY}")
    kestrel_target(${library} QT)

    set(module kestrel_outlet_${name})
    add_library(${module} MODULE ${ARG_MODULE})
    target_compile_definitions(${module} PRIVATE KESTREL_VERSION="${PROJECT_VERSION}")
    target_link_libraries(${module} PRIVATE ${library})
    kestrel_target(${module})
    if(NOT (KESTREL_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
        target_link_options(${module} PRIVATE -Wl,-z,defs)
    endif()
    set_target_properties(${module} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/outlets")
    install(TARGETS ${module} LIBRARY DESTINATION "${KESTREL_OUTLET_INSTALL_DIR}" COMPONENT outlets)
endfunction()
