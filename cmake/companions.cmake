# The companion programs zvkwifi, zvkprinter and zvknpa need libraries that zvkconfig does not use. If a library
# of a program is missing, the build by default leaves out this program, and prints one line about it.

find_package(pugixml QUIET)
find_package(nlohmann_json QUIET)
find_package(CLI11 QUIET)
zvk_plain_library(libpcap pcap/pcap.h pcap)
zvk_plain_library(libudev libudev.h udev)

# The columns are the name of a library, its target and its Debian package.
set(zvk_companion_libraries
  "pugixml pugixml::pugixml libpugixml-dev"
  "cli11 CLI11::CLI11 libcli11-dev"
  "libpcap libpcap libpcap-dev"
  "libudev libudev libudev-dev"
  "nlohmann-json nlohmann_json::nlohmann_json nlohmann-json3-dev")

# zvk_companion(OPTION PROGRAM LIBRARIES name... [NEEDED_BY variable...]) makes the cache variable
# OPTION with the values AUTO, ON and OFF. AUTO means ON if one of the NEEDED_BY variables is on. Otherwise AUTO
# builds PROGRAM if its libraries are found. Sets ${OPTION}_IS_BUILT. Adds PROGRAM to ZVK_COMPANIONS if the
# program is built.
function(zvk_companion option program)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "LIBRARIES;NEEDED_BY")
  set(${option} AUTO CACHE STRING "Build ${program}: AUTO (if its libraries are found), ON or OFF")
  set_property(CACHE ${option} PROPERTY STRINGS AUTO ON OFF)
  set(value ${${option}})
  if(NOT value STREQUAL "AUTO" AND value)
    set(value ON)
  endif()
  foreach(user ${arg_NEEDED_BY})
    if(${user} AND value STREQUAL "AUTO")
      set(value ON)
    elseif(${user} AND NOT value)
      message(FATAL_ERROR "${user} needs ${program}, which ${option} turns off")
    endif()
  endforeach()

  set(missing "")
  foreach(row ${zvk_companion_libraries})
    separate_arguments(row)
    list(GET row 0 library)
    list(GET row 1 target)
    list(GET row 2 package)
    if(library IN_LIST arg_LIBRARIES AND NOT TARGET ${target})
      list(APPEND missing "${library} (Debian: ${package})")
    endif()
  endforeach()
  list(JOIN missing " and " missing)

  set(is_built FALSE)
  if(NOT value)
    message(STATUS "${program} is left out: ${option} is ${value}")
  elseif(NOT missing)
    set(is_built TRUE)
    set(ZVK_COMPANIONS ${ZVK_COMPANIONS} ${program} PARENT_SCOPE)
  elseif(value STREQUAL "AUTO")
    message(STATUS "${program} is left out: it needs ${missing}")
  else()
    message(FATAL_ERROR "${program} needs ${missing}")
  endif()
  set(${option}_IS_BUILT ${is_built} PARENT_SCOPE)
endfunction()
