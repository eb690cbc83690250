# SPDX-License-Identifier: LGPL-3.0-or-later
#
# How an application of the family appears on the desktop: an entry in the menus, a type for its data files, a name on
# the session bus, a description for software centres, an icon. All are named after its bundle identifier.

# velmora_escape(VARIABLE): the text in it, as XML wants it.
macro(velmora_escape variable)
  string(REPLACE "&" "&amp;" ${variable} "${${variable}}")
  string(REPLACE "<" "&lt;" ${variable} "${${variable}}")
endmacro()

# velmora_desktop_integration(NAME, and of velmora_add_application's arguments those that the files name)
# Writes them into share/ of the build folder, where they are installed from: component "desktop".
function(velmora_desktop_integration name)
  cmake_parse_arguments(
    ARG "" "BUNDLE_NAME;BUNDLE_IDENTIFIER;VERSION;RELEASE_DATE;DATA_FILE_EXTENSION;SUMMARY;LICENSE;DEVELOPER;HOMEPAGE;ICON"
    "DESCRIPTION;CATEGORIES;SUMMARIES" ${ARGN})
  foreach(key BUNDLE_NAME BUNDLE_IDENTIFIER VERSION RELEASE_DATE DATA_FILE_EXTENSION SUMMARY LICENSE DEVELOPER HOMEPAGE
              DESCRIPTION CATEGORIES ICON)
    if("${ARG_${key}}" STREQUAL "")
      message(FATAL_ERROR "velmora_add_application(${name}): DESKTOP lacks ${key}")
    endif()
    set(${key} "${ARG_${key}}")
  endforeach()
  set(packaging ${VELMORA_ROOT}/packaging)
  set(share ${CMAKE_BINARY_DIR}/share)
  set(MIME_TYPE application/x-velmora-${DATA_FILE_EXTENSION})
  list(JOIN ARG_CATEGORIES ";" CATEGORIES)
  string(APPEND CATEGORIES ";")

  # "de=Text" for each language other than English.
  set(LOCALIZED_COMMENTS)
  set(LOCALIZED_SUMMARIES)
  foreach(summary IN LISTS ARG_SUMMARIES)
    string(REGEX MATCH "^([a-zA-Z_]+)=(.*)$" matched "${summary}")
    if(NOT matched)
      message(FATAL_ERROR "${name}: '${summary}' is no summary in a language (de=...)")
    endif()
    set(language ${CMAKE_MATCH_1})
    set(text "${CMAKE_MATCH_2}")
    string(APPEND LOCALIZED_COMMENTS "Comment[${language}]=${text}\n")
    velmora_escape(text)
    string(APPEND LOCALIZED_SUMMARIES "  <summary xml:lang=\"${language}\">${text}</summary>\n")
  endforeach()
  configure_file(${packaging}/application.desktop.in ${share}/applications/${BUNDLE_IDENTIFIER}.desktop @ONLY)

  set(CATEGORY_ELEMENTS)
  foreach(category IN LISTS ARG_CATEGORIES)
    string(APPEND CATEGORY_ELEMENTS "    <category>${category}</category>\n")
  endforeach()
  set(PARAGRAPHS)
  foreach(paragraph IN LISTS ARG_DESCRIPTION)
    velmora_escape(paragraph)
    string(APPEND PARAGRAPHS "    <p>${paragraph}</p>\n")
  endforeach()
  foreach(key BUNDLE_NAME SUMMARY LICENSE DEVELOPER HOMEPAGE)
    velmora_escape(${key})
  endforeach()
  configure_file(${packaging}/application.metainfo.xml.in ${share}/metainfo/${BUNDLE_IDENTIFIER}.metainfo.xml @ONLY)
  configure_file(${packaging}/application.mime.xml.in ${share}/mime/packages/${BUNDLE_IDENTIFIER}.xml @ONLY)

  set(icons icons/hicolor/scalable/apps)
  configure_file(${CMAKE_CURRENT_SOURCE_DIR}/${ICON} ${share}/${icons}/${BUNDLE_IDENTIFIER}.svg COPYONLY)
  install(FILES ${share}/applications/${BUNDLE_IDENTIFIER}.desktop DESTINATION share/applications COMPONENT desktop)
  install(FILES ${share}/metainfo/${BUNDLE_IDENTIFIER}.metainfo.xml DESTINATION share/metainfo COMPONENT desktop)
  install(FILES ${share}/mime/packages/${BUNDLE_IDENTIFIER}.xml DESTINATION share/mime/packages COMPONENT desktop)
  install(FILES ${share}/${icons}/${BUNDLE_IDENTIFIER}.svg DESTINATION share/${icons} COMPONENT desktop)

  # The bus starts the program by its full path, and only the installation knows that.
  install(
    CODE "
    set(program \"\${CMAKE_INSTALL_PREFIX}/bin/${name}\")
    if(program MATCHES \"[ '\\\"]\")
      string(REPLACE \"\\\"\" \"\\\\\\\"\" program \"\${program}\")
      set(program \"\\\"\${program}\\\"\")
    endif()
    set(BUNDLE_IDENTIFIER \"${BUNDLE_IDENTIFIER}\")
    configure_file(\"${packaging}/application.service.in\"
                   \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/share/dbus-1/services/${BUNDLE_IDENTIFIER}.service\" @ONLY)
    "
    COMPONENT desktop)
endfunction()
