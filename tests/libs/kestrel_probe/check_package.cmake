# A program that finds a tip, keeps a point and judges it is built against the installed library.
include("${CMAKE_CURRENT_LIST_DIR}/../../../cmake/BuildConsumer.cmake")

build_consumer(kestrel_probe KestrelProbe)
run("${WORK_DIR}/build/consumer")
if(NOT output STREQUAL "tip 0.30 -0.40 0.00 mm\nconforms: no\nplain fit 0.30 -0.40 mm\n")
    message(FATAL_ERROR "the consumer says: ${output}")
endif()
