# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Fails when a folder of src/ includes a header of a folder above it. The folders, from the
# bottom up; each may include its own headers and those of the folders below it:
#   Platform   Qt glue: view controllers, table view, keychain store, archiver, logging
#   Settings   the process-wide settings that TVRManager writes
#   Model      documents, sections, the date parser
#   Network    requests, errors and responses, the document, user and agreement managers
#   UI         appearance, header, cells, the document and agreement screens
#   Core       TVRManager, the facade, the one folder of the kit that reaches every other
#   Quick      the QML module, a library of its own on top of the kit
#   cmake -DSOURCE_DIR=src -P cmake/check_layers.cmake
set(layers Platform Settings Model Network UI Core Quick)
if(NOT SOURCE_DIR)
    get_filename_component(SOURCE_DIR "${CMAKE_CURRENT_LIST_DIR}/../src" ABSOLUTE)
endif()

# Which folder each header lives in.
foreach(layer IN LISTS layers)
    file(GLOB headers RELATIVE ${SOURCE_DIR}/${layer} ${SOURCE_DIR}/${layer}/*.h)
    foreach(header IN LISTS headers)
        set(home_${header} ${layer})
    endforeach()
endforeach()

set(violations "")
set(checked 0)
list(LENGTH layers layer_count)
math(EXPR top "${layer_count} - 1")
foreach(rank RANGE ${top})
    list(GET layers ${rank} layer)
    file(GLOB sources ${SOURCE_DIR}/${layer}/*.h ${SOURCE_DIR}/${layer}/*.cpp)
    foreach(source IN LISTS sources)
        math(EXPR checked "${checked} + 1")
        file(STRINGS ${source} includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
        foreach(line IN LISTS includes)
            string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([^\"]+)\".*" "\\1" header "${line}")
            get_filename_component(header "${header}" NAME)
            if(DEFINED home_${header})
                list(FIND layers ${home_${header}} included_rank)
                if(included_rank GREATER rank)
                    file(RELATIVE_PATH shown ${SOURCE_DIR} ${source})
                    list(APPEND violations "${shown} (${layer}) includes ${header} (${home_${header}})")
                endif()
            endif()
        endforeach()
    endforeach()
endforeach()

if(violations)
    list(JOIN violations "\n  " shown)
    message(FATAL_ERROR "folders include upwards:\n  ${shown}")
endif()
message(STATUS "layers: ${checked} files, every include points down: ${layers}")
