# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Builds and runs the consumer project against the kit installed from TOVRA_BUILD_DIR,
# against the kit's sources through add_subdirectory, against a static build of the kit,
# and with pkg-config instead of CMake.
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
run(${WORK_DIR}/installed/consumer_widgets)
message(STATUS "installed kit, widget screens alone: ${last_output}")
# Where the kit loads its network library with the first request, the kit still starts
# without it, and a request says what is missing.
if(EXISTS ${TOVRA_BUILD_DIR}/src/libTovraNetwork.so.1)
    file(GLOB network_library ${WORK_DIR}/prefix/lib*/libTovraNetwork.so.*.*)
    if(NOT network_library)
        message(FATAL_ERROR "the shared kit installed no libTovraNetwork")
    endif()
    file(RENAME ${network_library} ${network_library}.away)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env CONSUMER_NETWORK_LIBRARY_REMOVED=1
                            ${WORK_DIR}/installed/consumer_widgets
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    file(RENAME ${network_library}.away ${network_library})
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "a request without the network library did not name it:\n${output}")
    endif()
    message(STATUS "${output}")
endif()
if(EXISTS ${WORK_DIR}/installed/consumer_quick)
    run(${WORK_DIR}/installed/consumer_quick)
    message(STATUS "installed QML module: ${last_output}")
endif()

# 2. As a subdirectory of the host's build.
run(${CMAKE_COMMAND} -S ${consumer_source} -B ${WORK_DIR}/subdirectory -G ${GENERATOR}
    -DCONSUMER_USE_SUBDIRECTORY=ON -DTOVRA_SOURCE_DIR=${TOVRA_SOURCE_DIR})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/subdirectory --parallel 2)
run(${WORK_DIR}/subdirectory/consumer)
message(STATUS "kit as a subdirectory: ${last_output}")

# 3. A static kit, installed and found with find_package(Tovra).
run(${CMAKE_COMMAND} -S ${TOVRA_SOURCE_DIR} -B ${WORK_DIR}/static-kit -G ${GENERATOR}
    -DBUILD_SHARED_LIBS=OFF -DCMAKE_BUILD_TYPE=Release -DTOVRA_BUILD_TESTS=OFF
    -DTOVRA_BUILD_EXAMPLES=OFF -DTOVRA_BUILD_BENCHMARKS=OFF)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/static-kit --parallel 2)
run(${CMAKE_COMMAND} --install ${WORK_DIR}/static-kit --prefix ${WORK_DIR}/static-prefix)
file(GLOB_RECURSE shared_libraries ${WORK_DIR}/static-prefix/*.so*)
if(shared_libraries OR NOT EXISTS ${WORK_DIR}/static-prefix/lib/libTovraCore.a
   OR NOT EXISTS ${WORK_DIR}/static-prefix/lib/libTovraWidgets.a)
    message(FATAL_ERROR "the static kit installed no libTovraCore.a or libTovraWidgets.a, or a shared library: "
                        "${shared_libraries}")
endif()
run(${CMAKE_COMMAND} -S ${consumer_source} -B ${WORK_DIR}/static -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${WORK_DIR}/static-prefix)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/static)
run(${WORK_DIR}/static/consumer)
message(STATUS "static kit: ${last_output}")
run(${WORK_DIR}/static/consumer_widgets)
message(STATUS "static kit, widget screens alone: ${last_output}")
if(NOT EXISTS ${WORK_DIR}/static/consumer_quick)
    message(FATAL_ERROR "no QML host was built against the static kit")
endif()
run(${WORK_DIR}/static/consumer_quick)
message(STATUS "static QML module: ${last_output}")

# 4. No CMake on the host's side: the compiler with what pkg-config says, against the
#    shared kit installed in step 1.
find_program(PKG_CONFIG pkg-config REQUIRED)
find_program(CXX NAMES c++ g++ clang++ REQUIRED)
set(ENV{PKG_CONFIG_PATH} ${WORK_DIR}/prefix/lib/pkgconfig)
run(${PKG_CONFIG} --cflags --libs tovra)
string(STRIP "${last_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX} -std=c++17 -fPIC ${consumer_source}/main.cpp -o ${WORK_DIR}/pkg-config-consumer ${flags}
    -Wl,-rpath,${WORK_DIR}/prefix/lib)
run(${WORK_DIR}/pkg-config-consumer)
message(STATUS "pkg-config: ${last_output}")
