# What the programs for Windows carry inside: icon, version and manifest.

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
