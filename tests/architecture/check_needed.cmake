# Fails when a binary needs a shared library that it should do without, or lacks one that shows
# that the check looks at the right file.
#   cmake -D BINARY=<file> -D FORBIDDEN=<regex> -D EXPECTED=<regex> -P check_needed.cmake

execute_process(COMMAND readelf -d "${BINARY}" OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "NEEDED[^\n]*" needed "${dynamic}")
if(NOT "${needed}" MATCHES "${EXPECTED}")
    message(FATAL_ERROR "${BINARY} does not need ${EXPECTED}: ${needed}")
endif()
foreach(library IN LISTS needed)
    if(library MATCHES "${FORBIDDEN}")
        message(FATAL_ERROR "${BINARY} should do without ${library}")
    endif()
endforeach()
