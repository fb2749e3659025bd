# Installs the package into WORK_DIR, builds the consumer project against it and runs it.
# Variables: BUILD_DIR (of the project), CONSUMER_DIR, WORK_DIR, GENERATOR, COMPILER, BUILD_TYPE,
# FLAGS.

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output)
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --component kestrel_sdk --prefix "${WORK_DIR}/prefix")
run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
    "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix"
    -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
file(STRINGS "${WORK_DIR}/build/CMakeCache.txt" found REGEX "^KestrelSDK_DIR:")
if(NOT found MATCHES "=${WORK_DIR}/prefix/")
    message(FATAL_ERROR "another package was found: ${found}")
endif()
run(${CMAKE_COMMAND} --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/consumer")
if(NOT output STREQUAL "tool 0: 326.848 -187.216 109.503\n")
    message(FATAL_ERROR "the consumer says: ${output}")
endif()
