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
#   Quick      the QML module, a library of its own on top of the core library
# Then fails when a file of the core library or of the QML module includes a widget header:
# a header of the widget screens' library (src/TovraSources.cmake says which files those
# are) or one of Qt Widgets, or a header of Qt Network, which only the network library uses. Folders hold files of both libraries, so this is checked by
# library, not by folder. Qt's headers are where qtpaths6 or qmake6 says, unless given:
#   cmake [-DSOURCE_DIR=src] [-DQT_HEADERS_DIR=/usr/include/x86_64-linux-gnu/qt6] -P cmake/check_layers.cmake
cmake_policy(SET CMP0057 NEW) # if(... IN_LIST ...)
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

# The core and the QML module include no widget header.
include(${SOURCE_DIR}/TovraSources.cmake)
if(NOT QT_HEADERS_DIR)
    foreach(tool qtpaths6 qmake6 qtpaths qmake)
        find_program(qt_tool ${tool})
        if(qt_tool)
            execute_process(COMMAND ${qt_tool} -query QT_INSTALL_HEADERS OUTPUT_VARIABLE QT_HEADERS_DIR
                            OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
            break()
        endif()
    endforeach()
endif()
if(NOT IS_DIRECTORY "${QT_HEADERS_DIR}/QtWidgets")
    message(FATAL_ERROR "no Qt Widgets headers in '${QT_HEADERS_DIR}': pass -DQT_HEADERS_DIR=<Qt's include folder>")
endif()
# Qt Widgets' headers, but for the few that Qt Core or Gui has too (qaction.h).
file(GLOB qt_widgets RELATIVE ${QT_HEADERS_DIR}/QtWidgets ${QT_HEADERS_DIR}/QtWidgets/*)
foreach(header IN LISTS qt_widgets)
    if(NOT EXISTS ${QT_HEADERS_DIR}/QtGui/${header} AND NOT EXISTS ${QT_HEADERS_DIR}/QtCore/${header})
        set(widget_${header} "Qt Widgets")
    endif()
endforeach()
foreach(header IN LISTS TOVRA_WIDGETS_PUBLIC_HEADERS TOVRA_WIDGETS_SOURCES)
    get_filename_component(name ${header} NAME)
    set(widget_${name} "the widget screens")
endforeach()

file(GLOB quick_files RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/Quick/*.h ${SOURCE_DIR}/Quick/*.cpp)
set(widgetless ${TOVRA_CORE_PUBLIC_HEADERS} ${TOVRA_CORE_SOURCES} ${TOVRA_CORE_LINUX_SOURCES}
    ${TOVRA_CORE_OTHER_SOURCES} ${quick_files})
set(checked 0)
foreach(file IN LISTS widgetless)
    math(EXPR checked "${checked} + 1")
    file(STRINGS ${SOURCE_DIR}/${file} includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]")
    foreach(line IN LISTS includes)
        string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*[<\"]([^>\"]+)[>\"].*" "\\1" header "${line}")
        get_filename_component(name "${header}" NAME)
        if(header MATCHES "^QtWidgets(/|$)")
            list(APPEND violations "${file} includes ${header} (Qt Widgets)")
        elseif(DEFINED widget_${name})
            list(APPEND violations "${file} includes ${header} (${widget_${name}})")
        endif()
    endforeach()
endforeach()
if(violations)
    list(JOIN violations "\n  " shown)
    message(FATAL_ERROR "the core or the QML module includes a widget header:\n  ${shown}")
endif()
message(STATUS "layers: ${checked} files of the core and the QML module, no widget header among their includes")

# Qt Network is the network library's alone (TOVRA_NETWORK_SOURCES): the core loads it with
# its first request, so no file of the core or the QML module includes a Qt Network header.
file(GLOB qt_network RELATIVE ${QT_HEADERS_DIR}/QtNetwork ${QT_HEADERS_DIR}/QtNetwork/*)
set(network_headers "")
foreach(header IN LISTS qt_network)
    if(NOT EXISTS ${QT_HEADERS_DIR}/QtGui/${header} AND NOT EXISTS ${QT_HEADERS_DIR}/QtCore/${header})
        list(APPEND network_headers ${header})
    endif()
endforeach()
foreach(file IN LISTS widgetless)
    file(STRINGS ${SOURCE_DIR}/${file} includes REGEX "^[ \t]*#[ \t]*include[ \t]*<")
    foreach(line IN LISTS includes)
        string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*<([^>]+)>.*" "\\1" header "${line}")
        get_filename_component(name "${header}" NAME)
        if(header MATCHES "^QtNetwork(/|$)" OR name IN_LIST network_headers)
            list(APPEND violations "${file} includes ${header} (Qt Network)")
        endif()
    endforeach()
endforeach()
if(violations)
    list(JOIN violations "\n  " shown)
    message(FATAL_ERROR "the core or the QML module includes a Qt Network header:\n  ${shown}")
endif()
message(STATUS "layers: no Qt Network header in the core or the QML module")
