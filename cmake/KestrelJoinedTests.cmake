# With KESTREL_UNITY the tests of one folder that link the same are one program: each would compile all of
# Qt's headers and link all of its libraries for itself. How they are registered and run stays the same:
# ctest knows each of them, and bin/ has a link of its name to the program, which looks at the name.

# kestrel_can_join(<variable> <file>...)
# What tells Qt of a type does it outside of every namespace: such a test stays a program of its own.
function(kestrel_can_join variable)
    set(${variable} OFF PARENT_SCOPE)
    list(LENGTH ARGN count)
    if(count EQUAL 1)
        cmake_path(ABSOLUTE_PATH ARGN OUTPUT_VARIABLE source)
        file(STRINGS "${source}" types REGEX "^Q_DECLARE_METATYPE")
        if(NOT types)
            set(${variable} ON PARENT_SCOPE)
        endif()
    endif()
endfunction()

# kestrel_join_sources(<target> [QT] SOURCES <file>...)
# Compiles these tests' sources for the target, several at once.
function(kestrel_join_sources target)
    cmake_parse_arguments(ARG "QT" "" "SOURCES" ${ARGN})
    set(at_once 9)
    set(number 0)
    while(ARG_SOURCES)
        list(LENGTH ARG_SOURCES left)
        list(SUBLIST ARG_SOURCES 0 ${at_once} sources)
        list(TRANSFORM sources PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
        # The name that CMake's own have: the analysers' gates look for it.
        set(joined "${CMAKE_CURRENT_BINARY_DIR}/${target}/Unity/unity_${number}_cxx.cxx")
        set(script "${PROJECT_SOURCE_DIR}/cmake/JoinTests.cmake")
        add_custom_command(
            OUTPUT "${joined}"
            COMMAND ${CMAKE_COMMAND} "-DROOT=${PROJECT_SOURCE_DIR}" "-DOUTPUT=${joined}"
                    "-DSOURCES=${sources}" -DQT=${ARG_QT} -P "${script}"
            DEPENDS ${sources} "${script}"
            COMMENT "Joining tests: ${target} ${number}"
            VERBATIM)
        target_sources(${target} PRIVATE "${joined}")
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU") # takes what a source includes for a header
            set_source_files_properties("${joined}" PROPERTIES COMPILE_OPTIONS -Wno-subobject-linkage)
        endif()
        add_custom_target(${target}_joined_${number} DEPENDS "${joined}")
        add_dependencies(test_mocs ${target}_joined_${number})
        if(left LESS_EQUAL at_once)
            break()
        endif()
        list(SUBLIST ARG_SOURCES ${at_once} -1 ARG_SOURCES)
        math(EXPR number "${number} + 1")
    endwhile()
endfunction()

# The program's main calls the one of the test whose name it was started with.
function(kestrel_write_joined_main file)
    set(declarations "")
    set(calls "")
    foreach(name IN LISTS ARGN)
        string(APPEND declarations "namespace joined_${name} {\nint main(int argc, char *argv[]);\n}\n")
        string(APPEND calls "    if (name == \"${name}\")\n        return joined_${name}::main(argc, argv);\n")
    endforeach()
    file(CONFIGURE OUTPUT "${file}" @ONLY CONTENT "#include <cstdio>
#include <string_view>

${declarations}
int main(int argc, char *argv[])
{
    const std::string_view path = argv[0];
    const std::string_view name = path.substr(path.rfind('/') + 1);
${calls}    std::fprintf(stderr, \"Start the test by its own name: this one is none.\\n\");
    return 1;
}
")
endfunction()

# kestrel_join_test(<name> <source> [GUILESS] LIBS <target>... DEFINITIONS <definition>...
#                   DEPENDS <target>...)
# One test more for the program of those that are built alike. The programs are made when all of the
# folder's tests are known.
function(kestrel_join_test name source)
    string(SHA1 kind "${ARGN}")
    get_property(kinds DIRECTORY PROPERTY kestrel_kinds_of_tests)
    if(NOT kinds)
        cmake_language(DEFER CALL kestrel_build_joined_tests)
    endif()
    if(NOT kind IN_LIST kinds)
        set_property(DIRECTORY APPEND PROPERTY kestrel_kinds_of_tests ${kind})
        set_property(DIRECTORY PROPERTY kestrel_arguments_${kind} "${ARGN}")
    endif()
    set_property(DIRECTORY APPEND PROPERTY kestrel_names_${kind} ${name})
    set_property(DIRECTORY APPEND PROPERTY kestrel_sources_${kind} "${source}")
endfunction()

function(kestrel_build_joined_tests)
    get_property(kinds DIRECTORY PROPERTY kestrel_kinds_of_tests)
    file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    string(REPLACE "/" "_" folder "${folder}")
    set(number 0)
    foreach(kind IN LISTS kinds)
        get_property(names DIRECTORY PROPERTY kestrel_names_${kind})
        get_property(sources DIRECTORY PROPERTY kestrel_sources_${kind})
        get_property(arguments DIRECTORY PROPERTY kestrel_arguments_${kind})
        list(LENGTH names count)
        if(count EQUAL 1)
            kestrel_build_qt_test(${names} SOURCES ${sources} ${arguments})
            continue()
        endif()
        set(program ${folder}_${number})
        math(EXPR number "${number} + 1")
        set(main "${CMAKE_CURRENT_BINARY_DIR}/${program}_main.cpp")
        kestrel_write_joined_main("${main}" ${names})
        kestrel_build_qt_test(${program} SOURCES "${main}" JOINED ${sources} ${arguments})
        foreach(name IN LISTS names)
            add_custom_command(TARGET ${program} POST_BUILD
                COMMAND ${CMAKE_COMMAND} -E create_symlink ${program} ${name}
                WORKING_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
                BYPRODUCTS "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}")
            add_custom_target(${name} DEPENDS ${program})
        endforeach()
    endforeach()
endfunction()
