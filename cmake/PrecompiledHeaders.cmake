# Precompiled headers: the standard library's, Qt's and GoogleTest's headers are parsed once per
# build instead of once per source. Parsing them is most of the work in compiling a widget or
# test source.
#
# Off by default. test.sh turns them on for the sanitizer build and fuzz/run.sh for the fuzz
# build. The Release build goes without: GCC 12 loses track of which code comes from a
# system header when it comes through a precompiled header, and at -O2 and above reports
# -Warray-bounds on the standard library's own string code. Builds with a compiler cache go
# without too: the cache cannot look into a precompiled header, and compiling each source on
# its own shows an #include that is missing.
option(KV_PRECOMPILED_HEADERS "Precompile the standard library, Qt and GoogleTest headers" OFF)

# The headers most sources of each kind include. Each kind is compiled once, by a target of its
# own (kv_pch_std, kv_pch_qt, kv_pch_gtest) that links only what the kind needs: GCC takes a
# precompiled header only where every macro defined when it was made is defined alike, and
# compiled with the same -fPIC or -fPIE (a mismatch is an -Winvalid-pch error under -Werror).
set(KV_PCH_STD
    <algorithm>
    <array>
    <cmath>
    <cstdint>
    <cstring>
    <limits>
    <optional>
    <span>
    <stdexcept>
    <string>
    <string_view>
    <vector>)
# The whole of QtCore: the Qt test library includes it, and the widgets use much of it.
set(KV_PCH_QT
    ${KV_PCH_STD}
    <QtCore>
    <QApplication>
    <QComboBox>
    <QDialog>
    <QHBoxLayout>
    <QImage>
    <QLabel>
    <QLineEdit>
    <QMouseEvent>
    <QPainter>
    <QPushButton>
    <QVBoxLayout>
    <QWidget>)
set(KV_PCH_GTEST
    ${KV_PCH_STD}
    <filesystem>
    <gtest/gtest.h>)

# kv_precompiled_headers(TARGET STD|QT|GTEST): TARGET's sources use the precompiled headers of
# that kind. QT is for Qt widget targets, GTEST for GoogleTest programs without Qt.
function(kv_precompiled_headers target kind)
    if(NOT KV_PRECOMPILED_HEADERS)
        return()
    endif()
    string(TOLOWER "kv_pch_${kind}" holder)
    if(NOT TARGET ${holder})
        # CMake makes a target's precompiled header only for a target with a source.
        set(source ${CMAKE_BINARY_DIR}/${holder}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "// Makes the precompiled headers of ${holder}.\n")
        add_library(${holder} OBJECT ${source})
        set_target_properties(${holder} PROPERTIES AUTOMOC OFF AUTORCC OFF)
        target_precompile_headers(${holder} PRIVATE ${KV_PCH_${kind}})
        if(TARGET kv_warnings)
            target_link_libraries(${holder} PRIVATE kv_warnings)
        endif()
        if(kind STREQUAL "QT")
            target_link_libraries(${holder} PRIVATE Qt6::Widgets)
        elseif(kind STREQUAL "GTEST")
            # For programs: compiled as they are, position independent as an executable.
            find_package(GTest REQUIRED)
            target_link_libraries(${holder} PRIVATE GTest::gtest)
            set_target_properties(${holder} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
            target_compile_options(${holder} PRIVATE ${CMAKE_CXX_COMPILE_OPTIONS_PIE})
        endif()
    endif()
    target_precompile_headers(${target} REUSE_FROM ${holder})
endfunction()

# kv_precompiled_test_headers(FOLDER): every test target below FOLDER uses the precompiled
# headers of what it links: Qt's, or GoogleTest's for a program without Qt.
function(kv_precompiled_test_headers folder)
    if(NOT KV_PRECOMPILED_HEADERS)
        return()
    endif()
    set(folders ${folder})
    while(folders)
        list(POP_FRONT folders folder)
        get_property(subfolders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
        list(APPEND folders ${subfolders})
        get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
        foreach(target IN LISTS targets)
            get_target_property(type ${target} TYPE)
            get_target_property(libraries ${target} LINK_LIBRARIES)
            if(NOT type MATCHES "^(EXECUTABLE|OBJECT_LIBRARY)$" OR NOT libraries)
                continue()
            endif()
            if("Qt6::Widgets" IN_LIST libraries)
                kv_precompiled_headers(${target} QT)
            elseif(type STREQUAL "EXECUTABLE" AND ("GTest::gtest" IN_LIST libraries
                                                  OR "kv_test_main" IN_LIST libraries))
                kv_precompiled_headers(${target} GTEST)
            endif()
        endforeach()
    endwhile()
endfunction()
