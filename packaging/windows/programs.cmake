# What the programs for Windows carry inside: icon, version and manifest. The version is that which
# the program tells of itself.
file(STRINGS ${PROJECT_SOURCE_DIR}/src/common/version.h version_lines REGEX "constexpr")
if(NOT version_lines MATCHES "ProgramVersion = \"([0-9]+)\\.([0-9]+)([a-z]*)\".*ProgramRevision = ([0-9]+)")
  message(FATAL_ERROR "src/common/version.h tells no version")
endif()
set(program_version "${CMAKE_MATCH_1}.${CMAKE_MATCH_2}${CMAKE_MATCH_3}")
set(program_version_numbers "${CMAKE_MATCH_1},${CMAKE_MATCH_2},0,${CMAKE_MATCH_4}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${PROJECT_SOURCE_DIR}/src/common/version.h)

# describe_program(TARGET DESCRIPTION)
function(describe_program target program_description)
  set(program_file ${target}.exe)
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/program.rc.in ${resources} @ONLY)
  target_sources(${target} PRIVATE ${resources})
  set_source_files_properties(${resources} TARGET_DIRECTORY ${target} PROPERTIES
    OBJECT_DEPENDS "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/program.manifest;${CMAKE_CURRENT_FUNCTION_LIST_DIR}/tonewright.ico;${CMAKE_CURRENT_FUNCTION_LIST_DIR}/tonewright-document.ico")
endfunction()

describe_program(tonewright "Tonewright")
describe_program(tonewright-cli "Tonewright for the command line")
describe_program(tonewright-picture "Tonewright's pictures and prints for the command line")

# No console opens for the program with a window.
set_target_properties(tonewright PROPERTIES WIN32_EXECUTABLE ON)
