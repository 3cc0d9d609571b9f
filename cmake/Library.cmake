# One folder, one target, one floor:
#   itorv_library(<name> [MOC] SOURCES ... LINK <for all who use it> USE <for itself alone>)
# MOC is for folders with QObjects. Which folder may use which stands in docs/architecture.md.
function(itorv_library name)
    cmake_parse_arguments(ARG "MOC" "" "SOURCES;LINK;USE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE ${ARG_USE} itorv_options)
    set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_MOC})
    if(ARG_MOC OR "Qt6::Core" IN_LIST ARG_LINK)
        itorv_precompile(${name} headers_qt)
    else()
        itorv_precompile(${name} headers_plain)
    endif()
endfunction()

# Headers that nearly every file reads are compiled once for all folders. Each of these targets defines no more
# macros than all who use it, or the compiler would not take what was compiled.
set(plain_headers <algorithm> <array> <atomic> <chrono> <functional> <map> <memory> <mutex> <optional> <span>
                  <string> <string_view> <utility> <vector>)
set(qt_headers <QList> <QObject> <QPointer> <QRectF> <QString> <QStringList> <QVariant>)

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
