# Included by the scripts that try one of our packages as strangers would.
# Variables: BUILD_DIR (of the project), CONSUMER_DIR, WORK_DIR, GENERATOR, COMPILER, BUILD_TYPE,
# FLAGS.

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output)
    set(output "${output}" PARENT_SCOPE)
endfunction()

# build_consumer(<component> <package>)
# Installs a component into WORK_DIR and builds the consumer project there with the CMake package that
# comes with it, in WORK_DIR/build.
function(build_consumer component package)
    set(prefix "${WORK_DIR}/prefix")
    file(REMOVE_RECURSE "${WORK_DIR}")
    run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --component ${component} --prefix "${prefix}")
    run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
        "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
        "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_PREFIX_PATH=${prefix}"
        -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
    file(STRINGS "${WORK_DIR}/build/CMakeCache.txt" found REGEX "^${package}_DIR:")
    if(NOT found MATCHES "=${prefix}/")
        message(FATAL_ERROR "another package was found: ${found}")
    endif()
    run(${CMAKE_COMMAND} --build "${WORK_DIR}/build")
endfunction()
