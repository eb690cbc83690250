# SPDX-License-Identifier: LGPL-3.0-or-later
#
# How targets are made here. One target a folder, one library a storey; a folder's list says whom it may know.

cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH VELMORA_ROOT)
include(${CMAKE_CURRENT_LIST_DIR}/DesktopIntegration.cmake)

# What every target of ours is compiled with.
add_library(velmora_options INTERFACE)
target_include_directories(velmora_options INTERFACE ${VELMORA_ROOT}/framework ${VELMORA_ROOT})
target_compile_options(
  velmora_options
  INTERFACE -Wall
            -Wextra
            -Wshadow
            -Wconversion
            -Werror
            # 12.2's optimiser warns about its own std::string and std::vector code
            -Wno-restrict)
target_compile_definitions(velmora_options INTERFACE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)
# What is not marked VELMORA_EXPORT is private to its library; the tests look inside.
if(NOT VELMORA_TESTS)
  target_compile_options(velmora_options INTERFACE -fvisibility=hidden -fvisibility-inlines-hidden)
endif()
if(VELMORA_SANITIZE)
  target_compile_options(velmora_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                   -fno-omit-frame-pointer)
  target_link_options(velmora_options INTERFACE -fsanitize=address,undefined)
endif()
if(VELMORA_FUZZ)
  # clang leaves its sanitizers' symbols to the program, so what stands in a library alone cannot be checked there.
  set(VELMORA_COMPLETE_LIBRARIES "")
  target_compile_options(
    velmora_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
                              -fno-omit-frame-pointer -Wno-unknown-warning-option)
  target_link_options(velmora_options INTERFACE -fsanitize=address,undefined)
else()
  set(VELMORA_COMPLETE_LIBRARIES -Wl,--no-undefined)
endif()
if(VELMORA_SANITIZE OR VELMORA_FUZZ)
  add_library(velmora_sanitizer_defaults OBJECT ${CMAKE_CURRENT_LIST_DIR}/SanitizerDefaults.cpp)
  set(is_program $<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>)
  target_link_libraries(velmora_options INTERFACE $<${is_program}:$<TARGET_OBJECTS:velmora_sanitizer_defaults>>)
endif()

# The headers that almost every folder of a program includes, compiled once for all of them.
function(velmora_precompiled_headers target)
  if(NOT TARGET velmora_headers)
    add_library(velmora_headers OBJECT EXCLUDE_FROM_ALL ${VELMORA_ROOT}/cmake/headers.cpp)
    target_link_libraries(velmora_headers PRIVATE velmora_options Qt6::Widgets)
    set_target_properties(velmora_headers PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_precompile_headers(velmora_headers PRIVATE <QWidget> <QVariantMap> <QDateTime> <functional> <memory>)
  endif()
  target_precompile_headers(${target} REUSE_FROM velmora_headers)
endfunction()

set(VELMORA_STOREYS base link platform desktop orv velmora testing apps bridge)

# velmora_folder(FOLDER [MOC] [SOURCES ...] [KNOWS ...])
# The target of one folder, for its storey to be made of. FOLDER is the path under which its headers are included;
# SOURCES are named from there.
# KNOWS lists everything else that the folder may include: folders of its own storey by their path, storeys below by
# their name or a folder of theirs by its path, other libraries by their target. cmake/check-layers.py holds the
# includes to these lists, and finds circles among both.
function(velmora_folder folder)
  cmake_parse_arguments(ARG "MOC" "" "SOURCES;KNOWS" ${ARGN})
  string(REPLACE "/" "_" name ${folder})
  string(REGEX MATCH "^[^/]*" storey ${folder})
  set(known)
  foreach(other IN LISTS ARG_KNOWS)
    string(REGEX MATCH "^[^/]*" other_storey ${other})
    if(NOT other_storey IN_LIST VELMORA_STOREYS)
      list(APPEND known ${other})
    elseif(other_storey STREQUAL storey)
      string(REPLACE "/" "_" other ${other})
      list(APPEND known ${other}_objects)
    elseif(other_storey STREQUAL velmora)
      list(APPEND known velmora)
    else()
      list(APPEND known velmora_${other_storey})
    endif()
  endforeach()
  if(NOT ARG_SOURCES)
    add_library(${name}_objects INTERFACE)
    target_link_libraries(${name}_objects INTERFACE velmora_options ${known})
    return()
  endif()
  set(place ${VELMORA_ROOT}/${folder})
  if(NOT IS_DIRECTORY ${place})
    set(place ${VELMORA_ROOT}/framework/${folder})
  endif()
  list(TRANSFORM ARG_SOURCES PREPEND ${place}/)
  add_library(${name}_objects OBJECT ${ARG_SOURCES})
  target_link_libraries(${name}_objects PUBLIC velmora_options ${known})
  set_target_properties(${name}_objects PROPERTIES POSITION_INDEPENDENT_CODE ON AUTORCC ON AUTOMOC ${ARG_MOC})
  if("Qt6::Widgets" IN_LIST ARG_KNOWS)
    velmora_precompiled_headers(${name}_objects)
  endif()
endfunction()

# velmora_storey(NAME [STATIC] FOLDERS ... PUBLIC targets...)
# The library of a storey, made of its folders; PUBLIC is what its headers show of others. Undefined symbols are link
# errors, so what no folder's list names cannot be used. A static one is part of the programs and is not installed.
function(velmora_storey name)
  cmake_parse_arguments(ARG "STATIC" "" "FOLDERS;PUBLIC" ${ARGN})
  set(objects ${ARG_FOLDERS})
  list(TRANSFORM objects REPLACE "/" "_")
  list(TRANSFORM objects APPEND _objects)
  if(ARG_STATIC)
    add_library(${name} STATIC)
    target_link_libraries(${name} PUBLIC velmora_options ${ARG_PUBLIC} ${objects})
    return()
  endif()
  add_library(${name} SHARED)
  target_link_libraries(${name} PUBLIC velmora_options ${ARG_PUBLIC} PRIVATE ${objects})
  target_link_options(${name} PRIVATE ${VELMORA_COMPLETE_LIBRARIES})
  install(TARGETS ${name} LIBRARY DESTINATION lib)
endfunction()

# velmora_test_headers(TEST HEADERS OPTION): gives the test the headers that all tests precompile together, compiled with
# that option. Those of QTest are not among them: Qt defines macros for them that are different in each folder.
function(velmora_test_headers test headers option)
  if(NOT TARGET ${headers})
    add_library(${headers} OBJECT EXCLUDE_FROM_ALL ${VELMORA_ROOT}/cmake/headers.cpp)
    target_link_libraries(${headers} PRIVATE velmora_options GTest::gtest Qt6::Widgets)
    target_compile_options(${headers} PRIVATE ${option})
    target_precompile_headers(${headers} PRIVATE <gtest/gtest.h> <QWidget> <QVariantMap> <QDateTime> <functional> <memory>)
  endif()
  target_precompile_headers(${test} REUSE_FROM ${headers})
endfunction()

# velmora_test(NAME [ALONE] [OPTIMIZED] SOURCES ... LIBRARIES ...)
# A GoogleTest program on the offscreen platform, one ctest test with a time-out. With ALONE each of its tests is one,
# in a process of its own: for those that start other programs, wait for them, or may take the process with them.
# framework/testing/main/main.cpp gives it a home folder, settings and a runtime folder of its own.
function(velmora_test name)
  cmake_parse_arguments(ARG "ALONE;OPTIMIZED" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE velmora_options velmora_test_main Qt6::Test ${ARG_LIBRARIES})
  # Compiling is most of what a run of the tests costs; the code of the tests itself is seldom what they wait for.
  if(VELMORA_SANITIZE AND NOT ARG_OPTIMIZED)
    target_compile_options(${name} PRIVATE -O0)
    velmora_test_headers(${name} velmora_test_headers -O0)
  else()
    velmora_test_headers(${name} velmora_optimized_test_headers "")
  endif()
  if(ARG_ALONE)
    gtest_discover_tests(
      ${name}
      DISCOVERY_TIMEOUT 60
      DISCOVERY_MODE PRE_TEST
      PROPERTIES TIMEOUT 120)
  else()
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
  endif()
endfunction()

# velmora_add_application(NAME
#   BUNDLE_NAME name  BUNDLE_IDENTIFIER reverse-dns  VERSION short-version  BUILD build-number
#   DATA_FILE_EXTENSION extension  COPYRIGHT line  [FEED_URL address]
#   SOURCES ...  LIBRARIES ...  RESOURCES files...  PLUGIN bundle  HELP folder
#   TRANSLATIONS files.ts...
#   DESKTOP SUMMARY line  SUMMARIES de=line fr=line ...  DESCRIPTION paragraphs...  CATEGORIES names...
#           LICENSE spdx  DEVELOPER name  HOMEPAGE address  RELEASE_DATE yyyy-mm-dd  ICON svg)
#
# A resource keeps its folder: reference/weight.reference stands in share/NAME/reference. The plugin for OsiriX is a
# folder, and the only one in share/NAME/OsiriX Plugins. The help, a folder with <language>/index.html for each
# language, stands in share/NAME/help.
# A translation, NAME_LANGUAGE.ts, stands as NAME_LANGUAGE.qm in share/NAME/translations.
#
# DESKTOP, all of it or none, says how the application appears in menus, file managers and software centres, and on
# the session bus (DesktopIntegration.cmake).
#
# FEED_URL is where the application looks for new versions; without it every check for one is unsuccessful.
#
# An application of the family. Writes its information dictionary, share/NAME/Info.plist, and places its resources
# beside it, where the running program finds both.
function(velmora_add_application name)
  cmake_parse_arguments(ARG "" "BUNDLE_NAME;BUNDLE_IDENTIFIER;VERSION;BUILD;DATA_FILE_EXTENSION;COPYRIGHT;PLUGIN;HELP;FEED_URL"
                        "SOURCES;LIBRARIES;RESOURCES;TRANSLATIONS;DESKTOP" ${ARGN})
  foreach(required BUNDLE_NAME BUNDLE_IDENTIFIER VERSION BUILD DATA_FILE_EXTENSION COPYRIGHT SOURCES)
    if(NOT ARG_${required})
      message(FATAL_ERROR "velmora_add_application(${name}): ${required} is missing")
    endif()
  endforeach()
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTORCC ON)
  target_link_libraries(${name} PRIVATE velmora_options ${ARG_LIBRARIES})

  set(bundle ${CMAKE_BINARY_DIR}/share/${name})
  foreach(key BUNDLE_NAME BUNDLE_IDENTIFIER VERSION BUILD DATA_FILE_EXTENSION COPYRIGHT FEED_URL)
    string(REPLACE "&" "&amp;" ${key} "${ARG_${key}}")
    string(REPLACE "<" "&lt;" ${key} "${${key}}")
  endforeach()
  set(FEED_URL_ENTRY "")
  if(ARG_FEED_URL)
    set(FEED_URL_ENTRY "\n\t<key>SUFeedURL</key>\n\t<string>${FEED_URL}</string>")
  endif()
  configure_file(${VELMORA_ROOT}/cmake/Info.plist.in ${bundle}/Info.plist @ONLY)
  foreach(resource ${ARG_RESOURCES})
    cmake_path(GET resource PARENT_PATH folder)
    file(COPY ${CMAKE_CURRENT_SOURCE_DIR}/${resource} DESTINATION ${bundle}/${folder})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${resource})
  endforeach()
  file(REMOVE_RECURSE "${bundle}/OsiriX Plugins")
  if(ARG_PLUGIN)
    file(COPY "${CMAKE_CURRENT_SOURCE_DIR}/${ARG_PLUGIN}" DESTINATION "${bundle}/OsiriX Plugins")
    file(GLOB_RECURSE carried "${CMAKE_CURRENT_SOURCE_DIR}/${ARG_PLUGIN}/*")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${carried})
  endif()
  file(REMOVE_RECURSE "${bundle}/help")
  if(ARG_HELP)
    file(COPY "${CMAKE_CURRENT_SOURCE_DIR}/${ARG_HELP}/" DESTINATION "${bundle}/help")
    file(GLOB_RECURSE pages "${CMAKE_CURRENT_SOURCE_DIR}/${ARG_HELP}/*")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${pages})
  endif()
  if(ARG_TRANSLATIONS)
    velmora_translations(${name}_translations ${name} ${ARG_TRANSLATIONS})
  endif()
  if(ARG_DESKTOP)
    velmora_desktop_integration(
      ${name}
      BUNDLE_NAME "${ARG_BUNDLE_NAME}"
      BUNDLE_IDENTIFIER ${ARG_BUNDLE_IDENTIFIER}
      VERSION ${ARG_VERSION}
      DATA_FILE_EXTENSION ${ARG_DATA_FILE_EXTENSION}
      ${ARG_DESKTOP})
  endif()
  install(TARGETS ${name} RUNTIME DESTINATION bin)
  install(DIRECTORY ${bundle}/ DESTINATION share/${name})
endfunction()
