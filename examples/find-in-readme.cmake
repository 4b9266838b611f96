# SPDX-License-Identifier: MIT
# Fails unless the whole file SOURCE, but for the line of its licence, stands in README, letter by letter.
file(READ ${README} readme)
file(READ ${SOURCE} source)
string(REGEX REPLACE "^// SPDX[^\n]*\n" "" source "${source}")
string(FIND "${readme}" "${source}" position)
if(position EQUAL -1)
  message(FATAL_ERROR "${README} does not show ${SOURCE} as it is")
endif()
