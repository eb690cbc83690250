# SPDX-License-Identifier: LGPL-3.0-or-later
#
# Texts in the user's language: .ts files in the source tree, .qm files in the built and the installed one.

find_package(Qt6 6.4 REQUIRED COMPONENTS LinguistTools)

# velmora_translations(TARGET FOLDER files.ts...)
# Makes share/FOLDER/translations/NAME.qm of each NAME.ts, as a target of its own that is always built. A text that is
# unfinished is left out, and so stays English.
function(velmora_translations target folder)
  set(releases)
  foreach(source ${ARGN})
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    cmake_path(GET source STEM name)
    set(release ${CMAKE_BINARY_DIR}/share/${folder}/translations/${name}.qm)
    add_custom_command(
      OUTPUT ${release}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/share/${folder}/translations
      COMMAND Qt6::lrelease -silent ${source} -qm ${release}
      DEPENDS ${source}
      COMMENT "Releasing ${name}.qm"
      VERBATIM)
    list(APPEND releases ${release})
  endforeach()
  add_custom_target(${target} ALL DEPENDS ${releases})
endfunction()
