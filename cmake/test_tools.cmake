# Tests that need a tool which is not on every machine. If it is missing, such a test is skipped and
# says why. A machine with CI in its environment must have every tool.

# zvk_find_tools(RESULT tool...): sets RESULT to the tools that are missing.
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

# Adds a test that is skipped, because these tools are missing.
function(zvk_skipped_test name missing)
  add_test(NAME ${name} COMMAND sh -c "echo \"Missing: ${missing} (scripts/setup installs it).\"; exit 77")
  set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
endfunction()

# zvk_tool_test(NAME TOOLS tool... COMMAND command...): add_test, if the tools are there.
function(zvk_tool_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "TOOLS;COMMAND")
  zvk_find_tools(missing ${arg_TOOLS})
  if(missing)
    zvk_skipped_test(${name} "${missing}")
  else()
    add_test(NAME ${name} COMMAND ${arg_COMMAND})
  endif()
endfunction()
