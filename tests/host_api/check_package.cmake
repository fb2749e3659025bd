# Installs the host contract into WORK_DIR, builds a module and a host against it as strangers would,
# and lets the host load the module.
# Variables: BUILD_DIR (of the project), CONSUMER_DIR, WORK_DIR, GENERATOR, COMPILER, BUILD_TYPE,
# FLAGS.

set(prefix "${WORK_DIR}/prefix")

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output)
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --component kestrel_sdk --prefix "${prefix}")
run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
    "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_PREFIX_PATH=${prefix}"
    -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
file(STRINGS "${WORK_DIR}/build/CMakeCache.txt" found REGEX "^KestrelHostApi_DIR:")
if(NOT found MATCHES "=${prefix}/")
    message(FATAL_ERROR "another package was found: ${found}")
endif()
run(${CMAKE_COMMAND} --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/host" "${WORK_DIR}/build/libmodule.so")
if(NOT output STREQUAL "Tiny v0.1.0\nTools: 3 tools, protocol 1.14.0\n")
    message(FATAL_ERROR "the host says: ${output}")
endif()
