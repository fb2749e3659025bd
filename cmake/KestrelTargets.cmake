# What every target of this project has in common: warnings, sanitizers, precompiled headers.

if(KESTREL_SANITIZE STREQUAL "address")
    set(kestrel_sanitizers -fsanitize=address,undefined,float-cast-overflow
                           -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(KESTREL_SANITIZE STREQUAL "thread")
    set(kestrel_sanitizers -fsanitize=thread -fno-omit-frame-pointer)
elseif(KESTREL_SANITIZE)
    message(FATAL_ERROR "KESTREL_SANITIZE is '${KESTREL_SANITIZE}', not address or thread")
endif()

option(KESTREL_FUZZERS "Build the libFuzzer programs (clang only)" OFF)
if(KESTREL_FUZZERS)
    list(APPEND kestrel_sanitizers -fsanitize=fuzzer-no-link)
endif()

option(KESTREL_COVERAGE "Count which lines and branches are reached, into profiles/ (clang only)" OFF)
option(KESTREL_CLAZY "Let clazy look at what is compiled (clang only)" OFF)

# Which folder of what only we run, to check or measure the rest, is the current one: "tests". Empty for
# what is a product.
function(kestrel_checking_folder variable)
    file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    string(REGEX MATCH "^(tests|benchmarks|fuzz|soak|scripts)(/|$)" found "${folder}")
    set(${variable} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

function(kestrel_count_coverage target is_product)
    # A file of each process's own: programs that are told apart by the sizes of their parts only would
    # spoil each other's. Not by LLVM_PROFILE_FILE, which each unloaded plug-in would leave as a leak.
    set(profile "-fprofile-instr-generate=${CMAKE_BINARY_DIR}/profiles/%p-%m.profraw")
    target_link_options(${target} PRIVATE ${profile})
    if(is_product)
        target_compile_options(${target} PRIVATE ${profile} -fcoverage-mapping)
    endif()
endfunction()

# Clang has the source before it anyway, and parsing Qt's headers costs more than all the checks. The
# dialogs' slots are connected by name on purpose: the names are what hosts and tests know. What it
# finds is slow or detaches, which does no harm in programs that only check: it looks at products.
function(kestrel_run_clazy target)
    target_compile_options(${target} PRIVATE
        "SHELL:-Xclang -load -Xclang ClazyPlugin.so -Xclang -add-plugin -Xclang clazy"
        "SHELL:-Xclang -plugin-arg-clazy -Xclang level1,no-connect-by-name")
endfunction()

# A test program is built more often than it runs: little time for it in the compiler and linker. What
# it tests is built as always.
include(CheckLinkerFlag)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(kestrel_quick_linker -fuse-ld=lld)
else()
    set(kestrel_quick_linker -fuse-ld=gold)
endif()
function(kestrel_build_quickly target)
    target_compile_options(${target} PRIVATE -O0)
    check_linker_flag(CXX ${kestrel_quick_linker} kestrel_has_quick_linker) # asked once
    if(kestrel_has_quick_linker)
        target_link_options(${target} PRIVATE ${kestrel_quick_linker})
    endif()
endfunction()

# kestrel_target(<target> [QT] [APART])
# Gives a target of ours its warnings and sanitizers. QT: the target uses Qt: moc and rcc run for it
# and the commonest Qt headers are precompiled. APART: its sources have names in common, or one
# of them is another target's too.
function(kestrel_target target)
    cmake_parse_arguments(ARG "QT;APART" "" "" ${ARGN})
    kestrel_checking_folder(checks)
    set(is_product ON)
    if(checks)
        set(is_product OFF)
    endif()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                             $<$<BOOL:${KESTREL_WERROR}>:-Werror>)
    if(kestrel_sanitizers)
        target_compile_options(${target} PRIVATE ${kestrel_sanitizers})
        target_link_options(${target} PRIVATE ${kestrel_sanitizers})
        target_compile_definitions(${target} PRIVATE KESTREL_SLOW_BUILD) # waits take longer
    endif()
    if(KESTREL_COVERAGE)
        kestrel_count_coverage(${target} ${is_product})
    endif()
    if(KESTREL_CLAZY AND is_product)
        kestrel_run_clazy(${target})
    endif()
    if(KESTREL_UNITY AND NOT ARG_APART AND NOT checks MATCHES "benchmarks|fuzz")
        cmake_language(EVAL CODE "cmake_language(DEFER CALL kestrel_unite ${target})")
    endif()
    if(ARG_QT)
        set_target_properties(${target} PROPERTIES AUTOMOC ON AUTORCC ON)
        target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS QT_NO_FOREACH
                                                     QT_DEPRECATED_WARNINGS)
    endif()
    set(headers kestrel_qt_headers)
    if(checks STREQUAL "tests")
        kestrel_build_quickly(${target})
        set(headers kestrel_test_headers)
    elseif(KESTREL_SANITIZE AND NOT ARG_QT)
        target_compile_options(${target} PRIVATE -O1) # what computes would take ten times as long
    endif()
    get_target_property(links ${target} LINK_LIBRARIES)
    get_target_property(precompiles ${target} PRECOMPILE_HEADERS)
    if(KESTREL_PCH AND ARG_QT AND NOT precompiles AND "${links}" MATCHES "Qt5::Widgets|measurementtool|probecheck|host_api")
        target_precompile_headers(${target} REUSE_FROM ${headers})
    endif()
endfunction()

# Several of the target's sources are compiled at once. Not by UNITY_BUILD: that names them with the path of
# this clone, and the compiler's cache would find nothing of what another clone has compiled.
function(kestrel_unite target)
    get_target_property(sources ${target} SOURCES)
    set(at_once 10)
    set(number 0)
    set(count 0)
    set(included "")
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source)
        cmake_path(RELATIVE_PATH source BASE_DIRECTORY "${CMAKE_SOURCE_DIR}" OUTPUT_VARIABLE relative)
        cmake_path(IS_PREFIX CMAKE_BINARY_DIR "${source}" is_made)
        if(is_made OR NOT relative MATCHES "\\.cpp$")
            continue()
        endif()
        set_source_files_properties("${source}" PROPERTIES HEADER_FILE_ONLY ON)
        string(APPEND included "#include \"${relative}\"\n")
        math(EXPR count "${count} + 1")
        if(count EQUAL at_once)
            kestrel_write_united(${target} ${number} "${included}")
            math(EXPR number "${number} + 1")
            set(count 0)
            set(included "")
        endif()
    endforeach()
    if(count)
        kestrel_write_united(${target} ${number} "${included}")
    endif()
endfunction()

function(kestrel_write_united target number text)
    # The name that CMake's own would have: the analysers' gates look for it.
    set(file "${CMAKE_CURRENT_BINARY_DIR}/${target}/Unity/unity_${number}_cxx.cxx")
    file(CONFIGURE OUTPUT "${file}" CONTENT "${text}" @ONLY)
    set_source_files_properties("${file}" PROPERTIES SKIP_AUTOMOC ON)
    target_sources(${target} PRIVATE "${file}")
    target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}")
endfunction()

# kestrel_add_forms(<target> <file>.ui...)
# The forms' headers ui_<file>.h, for the target and for those that link it. Not by AUTOUIC: the
# build does not know what that writes, and would compile what includes a changed form's header the
# next time only.
function(kestrel_add_forms target)
    qt5_wrap_ui(headers ${ARGN})
    # What AUTOUIC or a form that has moved left in a build folder of before would be found first.
    file(GLOB leftovers "${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/include/ui_*.h"
                        "${CMAKE_CURRENT_BINARY_DIR}/ui_*.h")
    list(REMOVE_ITEM leftovers ${headers})
    if(leftovers)
        file(REMOVE ${leftovers})
    endif()
    target_sources(${target} PRIVATE ${headers})
    target_include_directories(${target} PUBLIC "${CMAKE_CURRENT_BINARY_DIR}")
    set_target_properties(${target} PROPERTIES AUTOGEN_TARGET_DEPENDS "${headers}")
endfunction()

# Compiled once, used by every target with widgets.
function(kestrel_make_qt_headers target)
    file(WRITE "${PROJECT_BINARY_DIR}/${target}.cpp" "")
    add_library(${target} OBJECT "${PROJECT_BINARY_DIR}/${target}.cpp")
    target_link_libraries(${target} PRIVATE Qt5::Widgets)
    target_precompile_headers(${target} PRIVATE <QtWidgets> <memory> <string> <vector>)
    kestrel_target(${target} QT)
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTORCC OFF)
endfunction()
