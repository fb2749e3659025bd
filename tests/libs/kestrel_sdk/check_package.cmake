# Installs the package into WORK_DIR, builds the consumer project and the installed example against
# it and runs them.
# Variables: BUILD_DIR (of the project) or SDK_DIR (the library's sources: built alone, by tools that
# find nothing else of this machine than compiler and fast_float), FAST_FLOAT_DIR, CONSUMER_DIR,
# WORK_DIR, GENERATOR, MAKE_PROGRAM, COMPILER, BUILD_TYPE, FLAGS.

set(prefix "${WORK_DIR}/prefix")
set(surroundings "")
set(options -G "${GENERATOR}" "-DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
    "-DCMAKE_CXX_FLAGS=${FLAGS}" -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)

function(run)
    execute_process(COMMAND ${surroundings} ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(expect_output expected_output expected_errors)
    foreach(kind output errors)
        if(NOT ${kind} STREQUAL expected_${kind})
            message(FATAL_ERROR "its ${kind}:\n${${kind}}instead of:\n${expected_${kind}}")
        endif()
    endforeach()
endfunction()

# Nothing is found below /usr or through PATH, which has the compiler's own tools only.
macro(enter_bare_surroundings)
    foreach(tool as ld ar ranlib nm)
        find_program(path_of_${tool} ${tool} REQUIRED)
        file(CREATE_LINK "${path_of_${tool}}" "${WORK_DIR}/bin/${tool}" SYMBOLIC)
    endforeach()
    set(surroundings ${CMAKE_COMMAND} -E env --unset=CMAKE_PREFIX_PATH "PATH=${WORK_DIR}/bin")
    list(APPEND options -DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF
         -DCMAKE_FIND_USE_SYSTEM_ENVIRONMENT_PATH=OFF -DCMAKE_FIND_USE_SYSTEM_PACKAGE_REGISTRY=OFF)
endmacro()

# The surroundings are as bare as is said: what the rest of the project needs is not found in them.
function(check_bareness)
    file(WRITE "${WORK_DIR}/probe/CMakeLists.txt" [[
cmake_minimum_required(VERSION 3.25)
project(Probe LANGUAGES CXX)
foreach(package Qt5 Eigen3 GTest benchmark FastFloat)
    find_package(${package} QUIET CONFIG)
    if(${package}_FOUND)
        message(FATAL_ERROR "${package} is found")
    endif()
endforeach()
]])
    run(${CMAKE_COMMAND} -S "${WORK_DIR}/probe" -B "${WORK_DIR}/probe/build" ${options})
endfunction()

function(build_and_run source program input)
    set(build "${WORK_DIR}/${program}")
    run(${CMAKE_COMMAND} -S "${source}" -B "${build}" ${options} "-DCMAKE_PREFIX_PATH=${prefix}")
    file(STRINGS "${build}/CMakeCache.txt" found REGEX "^KestrelSDK_DIR:")
    if(NOT found MATCHES "=${prefix}/")
        message(FATAL_ERROR "another package was found: ${found}")
    endif()
    run(${CMAKE_COMMAND} --build "${build}")
    file(WRITE "${WORK_DIR}/input" "${input}")
    execute_process(COMMAND "${build}/${program}" INPUT_FILE "${WORK_DIR}/input"
                    OUTPUT_VARIABLE output ERROR_VARIABLE errors COMMAND_ERROR_IS_FATAL ANY)
    set(output "${output}" PARENT_SCOPE)
    set(errors "${errors}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}/bin")
if(SDK_DIR)
    enter_bare_surroundings()
    check_bareness()
    run(${CMAKE_COMMAND} -S "${SDK_DIR}" -B "${WORK_DIR}/alone" ${options}
        "-DFastFloat_DIR=${FAST_FLOAT_DIR}")
    run(${CMAKE_COMMAND} --build "${WORK_DIR}/alone")
    run(${CMAKE_COMMAND} --install "${WORK_DIR}/alone" --prefix "${prefix}")
else()
    run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --component kestrel_sdk --prefix "${prefix}")
endif()

build_and_run("${CONSUMER_DIR}" consumer "")
expect_output("tool 0: 326.848 -187.216 109.503\n" "")

set(papers "${prefix}/share/doc/libkestrelsdk-dev")
file(STRINGS "${papers}/data_lines.md" heading LIMIT_COUNT 1)
if(NOT heading STREQUAL "# Data lines")
    message(FATAL_ERROR "data_lines.md is not installed")
endif()
build_and_run("${papers}/examples" tips
"fr 7
ts 1.5
6dmt 2 [0 1.000 0][1.5 -2.5 3.25][1 0 0 0 0 1 0 -1 0] [1 -1.000 0][0 0 0][0 0 0 0 0 0 0 0 0]
fr 8
6dmt 1 [0 1.000 0][1.5
")
expect_output("frame 7, 1.500 s
  tool 0: 1.500 -2.500 3.250 mm, tilted by 90.0 degrees
  tool 1 is not tracked
frame 8, -1.000 s
  tool 0: 1.500 -2.500 3.250 mm, tilted by 90.0 degrees
" "malformed: 6dmt 1 [0 1.000 0][1.5
")
