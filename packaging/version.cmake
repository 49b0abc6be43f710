# The version of this checkout, read anew when it changes:
#
#   program_version          "17.0a", as the program tells it
#   program_version_numbers  "17,0,0,1", the same with the revision, in numbers alone
#   program_day              "2026-11-22", the day of the newest part of CHANGELOG.md; while that is
#                            in the making, the day of the build, or what SOURCE_DATE_EPOCH says
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${PROJECT_SOURCE_DIR}/src/common/version.h ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
file(STRINGS ${PROJECT_SOURCE_DIR}/src/common/version.h version_lines REGEX "constexpr")
set(version "ProgramVersion = \"([0-9]+)\\.([0-9]+)([a-z]*)\".*ProgramRevision = ([0-9]+)")
if(NOT version_lines MATCHES "${version}")
  message(FATAL_ERROR "src/common/version.h tells no version")
endif()
set(program_version "${CMAKE_MATCH_1}.${CMAKE_MATCH_2}${CMAKE_MATCH_3}")
set(program_version_numbers "${CMAKE_MATCH_1},${CMAKE_MATCH_2},0,${CMAKE_MATCH_4}")

file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md newest LIMIT_COUNT 1 REGEX "^## ")
if(newest MATCHES "\\(([0-9]+-[0-9]+-[0-9]+)\\)$")
  set(program_day ${CMAKE_MATCH_1})
else()
  string(TIMESTAMP program_day %Y-%m-%d UTC)
endif()
