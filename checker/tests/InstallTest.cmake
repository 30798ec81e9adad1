# Installs the whole build into a fresh prefix, as a new user would, and runs the installed
# checker from there: it must find the core dictionary in the prefix with no environment
# variable set, and the desktop entry and manual page must be where desktops and man look.
#
# cmake -DBUILD_DIR=... -DPREFIX=... -P InstallTest.cmake

file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${PREFIX}"
                RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE errors)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cmake --install failed: ${errors}")
endif()

set(failures "")
execute_process(COMMAND "${CMAKE_COMMAND}" -E env --unset=CIFWARD_DICT_PATH "${PREFIX}/bin/cifward-check" --list-dicts
                RESULT_VARIABLE status OUTPUT_VARIABLE listed ERROR_VARIABLE errors)
if(listed STREQUAL "no dictionary loaded\n" AND NOT EXISTS "${PREFIX}/share/cifward/dict/cif_core.dic")
  message("skipped: the build ships no dictionary")
  file(REMOVE_RECURSE "${PREFIX}")
  return()
endif()
if(NOT status EQUAL 0 OR NOT listed MATCHES "^cif_core.dic [^ ]+ ${PREFIX}/share/cifward/dict/cif_core.dic\n$")
  string(APPEND failures "--list-dicts exited with ${status} and listed '${listed}' ${errors}\n")
endif()

foreach(file bin/cifward share/man/man1/cifward-check.1 share/cifward/docs/Cifward.html
             share/icons/hicolor/scalable/apps/cifward.svg share/mime/packages/cifward.xml)
  if(NOT EXISTS "${PREFIX}/${file}")
    string(APPEND failures "${file} is not installed\n")
  endif()
endforeach()
file(READ "${PREFIX}/share/man/man1/cifward-check.1" man)
if(NOT man MATCHES "^\\.TH CIFWARD-CHECK 1.*\\.TP\n\\\\fB\\\\-j\\\\fR, ")
  string(APPEND failures "the manual page lacks the option -j\n")
endif()
file(STRINGS "${PREFIX}/share/applications/cifward.desktop" exec REGEX "^Exec=")
if(NOT exec STREQUAL "Exec=\"${PREFIX}/bin/cifward\" %F")
  string(APPEND failures "the desktop entry starts '${exec}'\n")
endif()

file(REMOVE_RECURSE "${PREFIX}")
if(failures)
  message(FATAL_ERROR "${failures}")
endif()
