# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT

# The "docs" target: the API reference, as HTML in <build>/docs/html, from the comments in the
# public headers (the private *_p.h headers stay out) and the pages in docs/. Any Doxygen
# warning fails the target, so a public member without a comment, a broken reference or a
# misspelt parameter name is caught where it is written.
find_package(Doxygen)
if(NOT DOXYGEN_FOUND)
    message(STATUS "Doxygen not found: no docs target")
    return()
endif()

set(DOXYGEN_PROJECT_NAME Tovra)
set(DOXYGEN_PROJECT_NUMBER ${PROJECT_VERSION})
set(DOXYGEN_PROJECT_BRIEF "Terms of Service and Privacy Policy screens for Qt applications")
set(DOXYGEN_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/docs)
set(DOXYGEN_FILE_PATTERNS *.h)
set(DOXYGEN_EXCLUDE_PATTERNS *_p.h)
set(DOXYGEN_RECURSIVE YES)
set(DOXYGEN_STRIP_FROM_PATH ${PROJECT_SOURCE_DIR}/src)
set(DOXYGEN_STRIP_FROM_INC_PATH ${PROJECT_SOURCE_DIR}/src)
set(DOXYGEN_FULL_PATH_NAMES YES)
# Only what is documented is listed, and a public or protected class, function, signal or
# property left without a comment is a warning, so an error. Doxygen checks declarations
# at file scope only in a header with a \file comment: a header that declares any needs one.
set(DOXYGEN_EXTRACT_ALL NO)
set(DOXYGEN_EXTRACT_PRIVATE NO)
set(DOXYGEN_HIDE_UNDOC_CLASSES NO)
set(DOXYGEN_WARN_IF_UNDOCUMENTED YES)
# Doxygen 1.9.6 and later can also warn about an enum value left without a comment; older
# ones, such as Debian 12's 1.9.4, do not know the option.
if(DOXYGEN_VERSION VERSION_GREATER_EQUAL 1.9.6)
    set(DOXYGEN_WARN_IF_UNDOC_ENUM_VAL YES)
endif()
set(DOXYGEN_WARN_IF_DOC_ERROR YES)
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
set(DOXYGEN_QUIET YES)
set(DOXYGEN_GENERATE_HTML YES)
set(DOXYGEN_GENERATE_LATEX NO)
set(DOXYGEN_HAVE_DOT NO)
set(DOXYGEN_CLASS_GRAPH NO)
set(DOXYGEN_SORT_MEMBER_DOCS NO)
set(DOXYGEN_ENABLE_PREPROCESSING YES)
set(DOXYGEN_MACRO_EXPANSION YES)
set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
# Doxygen knows Q_SIGNALS itself and lists the signals apart; the export macros go.
set(DOXYGEN_PREDEFINED "TOVRA_EXPORT=" "TOVRAQUICK_EXPORT=" "Q_OBJECT=" "Q_SLOTS=" "Q_DECLARE_METATYPE(x)=")
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE ${PROJECT_SOURCE_DIR}/docs/api.md)

doxygen_add_docs(docs ${PROJECT_SOURCE_DIR}/docs/api.md ${PROJECT_SOURCE_DIR}/docs/qml.md ${PROJECT_SOURCE_DIR}/src
    COMMENT "API reference in ${CMAKE_BINARY_DIR}/docs/html")
