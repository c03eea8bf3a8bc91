# zvk_plain_library(TARGET HEADER LIBRARY): finds a library that has no CMake package. The build does not need
# pkg-config for it. Defines TARGET if header and library are found, and TARGET_headers, which has only the path of
# the header: tests that define the library's functions themselves link it.
function(zvk_plain_library target header library)
  string(TOUPPER ${target} prefix)
  find_path(${prefix}_INCLUDE_DIR ${header})
  find_library(${prefix}_LIBRARY ${library})
  mark_as_advanced(${prefix}_INCLUDE_DIR ${prefix}_LIBRARY)
  if(${prefix}_INCLUDE_DIR AND ${prefix}_LIBRARY)
    add_library(${target}_headers INTERFACE)
    target_include_directories(${target}_headers SYSTEM INTERFACE ${${prefix}_INCLUDE_DIR})
    add_library(${target} INTERFACE)
    target_link_libraries(${target} INTERFACE ${target}_headers ${${prefix}_LIBRARY})
  endif()
endfunction()
