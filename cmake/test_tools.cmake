# Functions for tests that need tools. If a tool is missing, the test is skipped and prints the name of the
# tool. If CI is set in the environment, a missing tool is an error.

# zvk_find_tools(RESULT tool...): sets RESULT to the names of the missing tools, with commas between them.
function(zvk_find_tools result)
  set(missing "")
  foreach(tool ${ARGN})
    find_program(ZVK_TOOL_${tool} ${tool})
    mark_as_advanced(ZVK_TOOL_${tool})
    if(NOT ZVK_TOOL_${tool})
      list(APPEND missing ${tool})
    endif()
  endforeach()
  list(JOIN missing ", " missing)
  if(missing AND NOT "$ENV{CI}" STREQUAL "")
    message(FATAL_ERROR "The tests need ${missing}; scripts/setup installs every tool")
  endif()
  set(${result} "${missing}" PARENT_SCOPE)
endfunction()

# zvk_skipped_test(NAME MISSING): adds a test that is always skipped, because the tools MISSING are missing.
function(zvk_skipped_test name missing)
  add_test(NAME ${name} COMMAND sh -c "echo \"Missing: ${missing} (scripts/setup installs it).\"; exit 77")
  set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
endfunction()

# zvk_tool_test(NAME TOOLS tool... COMMAND command...): like add_test, but skips the test if a tool is missing.
function(zvk_tool_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "TOOLS;COMMAND")
  zvk_find_tools(missing ${arg_TOOLS})
  if(missing)
    zvk_skipped_test(${name} "${missing}")
  else()
    add_test(NAME ${name} COMMAND ${arg_COMMAND})
  endif()
endfunction()
