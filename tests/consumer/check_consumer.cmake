# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Builds and runs the consumer project against the kit installed from TOVRA_BUILD_DIR,
# then against the kit's sources through add_subdirectory.
#   cmake -DTOVRA_SOURCE_DIR=... -DTOVRA_BUILD_DIR=... -DWORK_DIR=... [-DGENERATOR=...] -P check_consumer.cmake

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${output}")
    endif()
    set(last_output "${output}" PARENT_SCOPE)
endfunction()

set(consumer_source ${CMAKE_CURRENT_LIST_DIR})
if(NOT GENERATOR)
    set(GENERATOR "Unix Makefiles")
endif()
file(REMOVE_RECURSE ${WORK_DIR})

# 1. Installed, found with find_package(Tovra).
run(${CMAKE_COMMAND} --install ${TOVRA_BUILD_DIR} --prefix ${WORK_DIR}/prefix)
if(EXISTS ${WORK_DIR}/prefix/include/Tovra/TVRArchiver_p.h)
    message(FATAL_ERROR "a private header was installed")
endif()
run(${CMAKE_COMMAND} -S ${consumer_source} -B ${WORK_DIR}/installed -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/installed)
run(${WORK_DIR}/installed/consumer)
message(STATUS "installed kit: ${last_output}")

# 2. As a subdirectory of the host's build.
run(${CMAKE_COMMAND} -S ${consumer_source} -B ${WORK_DIR}/subdirectory -G ${GENERATOR}
    -DCONSUMER_USE_SUBDIRECTORY=ON -DTOVRA_SOURCE_DIR=${TOVRA_SOURCE_DIR})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/subdirectory --parallel 2)
run(${WORK_DIR}/subdirectory/consumer)
message(STATUS "kit as a subdirectory: ${last_output}")
