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

# kestrel_target(<target> [QT])
# Gives a target of ours its warnings and sanitizers. QT: the target uses Qt: moc and rcc run for it
# and the commonest Qt headers are precompiled.
function(kestrel_target target)
    cmake_parse_arguments(ARG "QT" "" "" ${ARGN})
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                             $<$<BOOL:${KESTREL_WERROR}>:-Werror>)
    if(kestrel_sanitizers)
        target_compile_options(${target} PRIVATE ${kestrel_sanitizers})
        target_link_options(${target} PRIVATE ${kestrel_sanitizers})
        target_compile_definitions(${target} PRIVATE KESTREL_SLOW_BUILD) # waits take longer
    endif()
    if(ARG_QT)
        set_target_properties(${target} PROPERTIES AUTOMOC ON AUTORCC ON)
        target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS QT_NO_FOREACH
                                                     QT_DEPRECATED_WARNINGS)
    endif()
    get_target_property(links ${target} LINK_LIBRARIES)
    if(KESTREL_PCH AND ARG_QT AND "${links}" MATCHES "Qt5::Widgets|measurementtool|probecheck|host_api")
        target_precompile_headers(${target} REUSE_FROM kestrel_qt_headers)
    endif()
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
function(kestrel_make_qt_headers)
    file(WRITE "${PROJECT_BINARY_DIR}/qt_headers.cpp" "")
    add_library(kestrel_qt_headers OBJECT "${PROJECT_BINARY_DIR}/qt_headers.cpp")
    target_link_libraries(kestrel_qt_headers PRIVATE Qt5::Widgets)
    target_compile_definitions(kestrel_qt_headers PRIVATE QT_NO_KEYWORDS QT_NO_FOREACH
                                                          QT_DEPRECATED_WARNINGS)
    target_precompile_headers(kestrel_qt_headers PRIVATE <QtWidgets> <memory> <string> <vector>)
    kestrel_target(kestrel_qt_headers)
endfunction()
