# One folder, one target, one floor:
#   itorv_library(<name> [MOC] [QML <uri> [QML_DEPENDS <uri>...]] SOURCES ... LINK <for all who use it> USE <for itself alone>)
# MOC is for folders with QObjects (each source ends with what is generated for its class, which otherwise would read
# all headers once more), QML for those whose types the looks know by name. Which folder may use which stands in docs/architecture.md.
function(itorv_library name)
    cmake_parse_arguments(ARG "MOC" "QML" "SOURCES;LINK;USE;QML_DEPENDS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE ${ARG_USE} itorv_options)
    set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_MOC})
    if(ARG_QML)
        string(REPLACE "." "/" folder ${ARG_QML})
        qt_add_qml_module(${name} URI ${ARG_QML} VERSION 1.0 NO_PLUGIN RESOURCE_PREFIX /
                          DEPENDENCIES QtQuick ${ARG_QML_DEPENDS}
                          OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml/${folder})
        target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})  # for what Qt generates
    endif()
    if(ARG_MOC OR "Qt6::Core" IN_LIST ARG_LINK)
        itorv_precompile(${name} headers_qt)
    else()
        itorv_precompile(${name} headers_plain)
    endif()
endfunction()

# Headers that nearly every file reads are compiled once for all folders. Each of these targets defines no more
# macros than all who use it, or the compiler would not take what was compiled.
set(plain_headers <algorithm> <array> <atomic> <chrono> <filesystem> <functional> <map> <memory> <mutex> <optional> <span>
                  <string> <string_view> <utility> <vector>)
set(qt_headers <QList> <QObject> <QPointer> <QRectF> <QString> <QStringList> <QVariant>
               <QtQmlIntegration/qqmlintegration.h>)

function(itorv_precompiled_headers name link)
    add_library(${name} STATIC ${PROJECT_SOURCE_DIR}/cmake/Headers.cpp)
    target_link_libraries(${name} PRIVATE ${link} itorv_options)
    target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

function(itorv_precompile name headers)
    if(TARGET ${headers})
        target_precompile_headers(${name} REUSE_FROM ${headers})
    endif()
endfunction()
