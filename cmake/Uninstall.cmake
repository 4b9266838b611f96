# SPDX-License-Identifier: MIT
# Removes what the last installation of the build in the current folder has put in place: the target
# uninstall runs it. Folders of ours that are then empty go, too. DESTDIR is honoured as when installing.

set(manifest ${CMAKE_BINARY_DIR}/install_manifest.txt)
if(NOT EXISTS ${manifest})
  message(FATAL_ERROR "nothing is known to be installed: there is no ${manifest}")
endif()

file(STRINGS ${manifest} files ENCODING UTF-8)
foreach(file IN LISTS files)
  set(path "$ENV{DESTDIR}${file}")
  # A link is there even if what it names is gone.
  if(EXISTS "${path}" OR IS_SYMLINK "${path}")
    message(STATUS "Removing ${path}")
    file(REMOVE "${path}")
    if(EXISTS "${path}" OR IS_SYMLINK "${path}")
      message(FATAL_ERROR "${path} cannot be removed")
    endif()
  else()
    message(STATUS "Not there: ${path}")
  endif()

  # From the file upwards, as long as the folder is named after the project.
  cmake_path(GET path PARENT_PATH folder)
  while(folder MATCHES "/(kpgeometry|KpGeometry)(/|$)" AND IS_DIRECTORY "${folder}")
    file(GLOB left LIST_DIRECTORIES true "${folder}/*" "${folder}/.*")
    list(FILTER left EXCLUDE REGEX "/\\.\\.?$")
    if(left)
      break()
    endif()
    file(REMOVE_RECURSE "${folder}")
    cmake_path(GET folder PARENT_PATH folder)
  endwhile()
endforeach()
# A second run must not take away what somebody else has installed there since.
file(REMOVE ${manifest})
