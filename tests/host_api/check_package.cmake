# A module and a host are built against the installed host contract, and the host loads the module.
include("${CMAKE_CURRENT_LIST_DIR}/../../cmake/BuildConsumer.cmake")

build_consumer(kestrel_sdk KestrelHostApi)
run("${WORK_DIR}/build/host" "${WORK_DIR}/build/libmodule.so")
if(NOT output STREQUAL "Tiny v0.1.0\nTools: 3 tools, protocol 1.14.0\n")
    message(FATAL_ERROR "the host says: ${output}")
endif()
