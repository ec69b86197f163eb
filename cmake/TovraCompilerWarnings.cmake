# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Warnings used for every target of the kit, its tests, examples and benchmarks.
function(tovra_set_warnings target)
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4)
        if(TOVRA_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE /WX)
        endif()
    else()
        target_compile_options(${target} PRIVATE -Wall -Wextra)
        if(TOVRA_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
    endif()
endfunction()
