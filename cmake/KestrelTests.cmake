# How a test is registered. No test runs without a time-out, a label and the offscreen platform.

find_package(GTest REQUIRED)
include(GoogleTest)
include(KestrelJoinedTests)

# Builds all tests that start threads: the ones that the thread sanitizer runs.
add_custom_target(threaded_tests)

set(KESTREL_TEST_TIMEOUT 300 CACHE STRING "Seconds after which a hanging test is killed")

set(kestrel_test_environment
    "QT_QPA_PLATFORM=offscreen"
    "QT_FONT_DPI=96" # what the platform says of itself is another number
    "PULSE_RUNTIME_PATH=/nonexistent/pulse" # nobody hears a test
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.supp:print_suppressions=0"
    "TSAN_OPTIONS=ignore_noninstrumented_modules=1:halt_on_error=1:die_after_fork=0:suppressions=${PROJECT_SOURCE_DIR}/tests/support/threads.supp:print_suppressions=0")

function(kestrel_register_test name threaded)
    set(labels ${ARGN})
    if(threaded)
        list(APPEND labels threaded)
        add_dependencies(threaded_tests ${name})
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${KESTREL_TEST_TIMEOUT} LABELS "${labels}"
                                            ENVIRONMENT "${kestrel_test_environment}")
endfunction()

# kestrel_generate_mocs(<name> <file>...)
# "file.moc" for each of these sources that includes it, without AUTOMOC, which would compile one more
# file and run one more program for each test.
add_custom_target(test_mocs) # the analysers need them
function(kestrel_generate_mocs name)
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}_moc")
    target_include_directories(${name} PRIVATE "${folder}")
    foreach(source IN LISTS ARGN)
        cmake_path(GET source STEM stem)
        cmake_path(ABSOLUTE_PATH source)
        file(STRINGS "${source}" included REGEX "^#include \"${stem}.moc\"$")
        if(included)
            qt5_generate_moc("${source}" "${folder}/${stem}.moc" TARGET ${name})
            target_sources(${name} PRIVATE "${folder}/${stem}.moc")
            add_custom_target(${name}_${stem}_moc DEPENDS "${folder}/${stem}.moc")
            add_dependencies(test_mocs ${name}_${stem}_moc)
        endif()
    endforeach()
endfunction()

# kestrel_add_qt_test(<name> [THREADED] [GUILESS] SOURCES <file>... [LIBS <target>...]
#                     [DEFINITIONS <definition>...] [DEPENDS <target>...] [LABELS <label>...])
# A QtTest program; its main is in the source (QTEST_MAIN or QTEST_GUILESS_MAIN). GUILESS: neither
# it nor what it links knows QtWidgets. DEPENDS: what it starts or loads is built before it. The target
# may be made later, and be shared: what it needs is said here.
function(kestrel_add_qt_test name)
    cmake_parse_arguments(ARG "THREADED;GUILESS" "" "SOURCES;LIBS;DEFINITIONS;DEPENDS;LABELS" ${ARGN})
    set(guiless)
    if(ARG_GUILESS)
        set(guiless GUILESS)
    endif()
    set(building ${guiless} LIBS ${ARG_LIBS} DEFINITIONS ${ARG_DEFINITIONS} DEPENDS ${ARG_DEPENDS})
    kestrel_can_join(joins ${ARG_SOURCES})
    if(KESTREL_UNITY AND joins)
        kestrel_join_test(${name} ${ARG_SOURCES} ${building})
    else()
        kestrel_build_qt_test(${name} SOURCES ${ARG_SOURCES} ${building})
    endif()
    add_test(NAME ${name} COMMAND "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}")
    kestrel_register_test(${name} ${ARG_THREADED} qt ${ARG_LABELS})
endfunction()

function(kestrel_build_qt_test program)
    cmake_parse_arguments(ARG "GUILESS" "" "SOURCES;JOINED;LIBS;DEFINITIONS;DEPENDS" ${ARGN})
    add_executable(${program} ${ARG_SOURCES})
    target_link_libraries(${program} PRIVATE ${ARG_LIBS} Qt5::Test)
    if(NOT ARG_GUILESS)
        target_link_libraries(${program} PRIVATE Qt5::Widgets)
    endif()
    target_compile_definitions(${program} PRIVATE ${ARG_DEFINITIONS})
    if(ARG_DEPENDS)
        add_dependencies(${program} ${ARG_DEPENDS})
    endif()
    kestrel_target(${program} QT APART)
    if(NOT "${ARG_SOURCES}" MATCHES "\\.h(;|$)")
        kestrel_generate_mocs(${program} ${ARG_SOURCES} ${ARG_JOINED})
    endif()
    if(ARG_JOINED)
        kestrel_join_sources(${program} QT SOURCES ${ARG_JOINED})
    endif()
endfunction()

# kestrel_run_again(<name> PROGRAM <Qt test> ENVIRONMENT <VARIABLE=value>... [FUNCTIONS <name>...]
#                   [LABELS <label>...])
# Some or all functions of a Qt test once more, in other surroundings.
function(kestrel_run_again name)
    cmake_parse_arguments(ARG "" "PROGRAM" "ENVIRONMENT;FUNCTIONS;LABELS" ${ARGN})
    add_test(NAME ${name} COMMAND "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${ARG_PROGRAM}" ${ARG_FUNCTIONS})
    kestrel_register_test(${name} FALSE qt ${ARG_LABELS})
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT ${ARG_ENVIRONMENT})
endfunction()

# kestrel_add_gtest(<name> [THREADED] SOURCES <file>... [LIBS <target>...] [LABELS <label>...])
# A GoogleTest program without Qt, linked to gtest_main; one ctest entry for the whole program.
function(kestrel_add_gtest name)
    cmake_parse_arguments(ARG "THREADED" "" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest_main)
    kestrel_target(${name} APART)
    if(KESTREL_UNITY)
        set(tests ${ARG_SOURCES})
        list(FILTER tests INCLUDE REGEX "(^|/)test_[^/]*\\.cpp$")
        list(LENGTH tests count)
        if(count GREATER 1)
            kestrel_join_sources(${name} SOURCES ${tests})
            set_source_files_properties(${tests} PROPERTIES HEADER_FILE_ONLY ON)
        endif()
    endif()
    add_test(NAME ${name} COMMAND ${name})
    kestrel_register_test(${name} ${ARG_THREADED} gtest ${ARG_LABELS})
endfunction()

# kestrel_add_package_test(<name> <label> <variable>=<value>...)
# Runs check_package.cmake of this folder, which installs one of our packages and builds the project
# in consumer/ against it, as a stranger would. The variables say where the package comes from.
function(kestrel_add_package_test name label)
    set(definitions ${ARGN} "CONSUMER_DIR=${CMAKE_CURRENT_SOURCE_DIR}/consumer"
        "WORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/${name}" "GENERATOR=${CMAKE_GENERATOR}"
        "MAKE_PROGRAM=${CMAKE_MAKE_PROGRAM}" "COMPILER=${CMAKE_CXX_COMPILER}"
        "BUILD_TYPE=${CMAKE_BUILD_TYPE}")
    list(TRANSFORM definitions PREPEND -D)
    list(JOIN kestrel_sanitizers " " flags)
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} ${definitions} "-DFLAGS=${flags}"
                                  -P "${CMAKE_CURRENT_SOURCE_DIR}/check_package.cmake")
    kestrel_register_test(${name} FALSE ${label})
endfunction()
