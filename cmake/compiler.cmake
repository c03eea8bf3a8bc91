# Warnings, sanitizers and the compiler cache, for every target of the project.

add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2)

# On 32-bit machines: files of more than 2 GiB, and times after 2038. Debian 13's compiler for armhf has 64-bit
# times by default, as have its libraries. In the interfaces of all other libraries a time has the compiler's
# default size. zvk_uses_library_times(FILE...) is for the sources that pass times to a library.
set(ZVK_HAS_64_BIT_TIMES OFF)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  include(CheckCXXSourceCompiles)
  check_cxx_source_compiles("#include <ctime>
    static_assert(sizeof(std::time_t) == 8); int main() {}" ZVK_DEFAULT_TIME_HAS_64_BITS)
  set(ZVK_HAS_64_BIT_TIMES ON)
  add_compile_options(-D_FILE_OFFSET_BITS=64)
  if(NOT ZVK_DEFAULT_TIME_HAS_64_BITS)
    add_compile_options(-D_TIME_BITS=64)
  endif()
endif()
function(zvk_uses_library_times)
  if(ZVK_HAS_64_BIT_TIMES AND NOT ZVK_DEFAULT_TIME_HAS_64_BITS)
    set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS -U_TIME_BITS SKIP_PRECOMPILE_HEADERS ON)
  endif()
endfunction()

# zvk_wrap(TARGET SCOPE CALL...): the linker's --wrap for calls to the C library, under the names that they have
# on this machine (testing/wrapped_names.h).
function(zvk_wrap target scope)
  foreach(call ${ARGN})
    if(ZVK_HAS_64_BIT_TIMES)
      string(REGEX REPLACE "^(open|fopen)$" "\\164" call ${call})
      string(REGEX REPLACE "^(select|time|clock_gettime)$" "__\\164" call ${call})
    endif()
    target_link_options(${target} ${scope} "LINKER:--wrap=${call}")
  endforeach()
endfunction()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 warns of an overlap if any literal is assigned to a std::string (GCC bug 105329).
  add_compile_options(-Wno-restrict)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_UNITY_BUILD)
  # g++ takes a source that another source includes for a header, and warns of its unnamed namespace.
  add_compile_options(-Wno-subobject-linkage)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options(-Wthread-safety -Wthread-safety-beta)
endif()

if(ZVK_SANITIZERS)
  # Without optimisation some end-to-end tests take minutes. The reports need no debug information but the lines.
  add_compile_options("$<$<CONFIG:Debug>:-O1;-g1>" -fsanitize=${ZVK_SANITIZERS} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZVK_SANITIZERS})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND ZVK_SANITIZERS MATCHES "address")
    # Links the shared runtime, as g++ does. With clang's static runtime a preloaded clock (faketime) deadlocks.
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-runtime-dir
      OUTPUT_VARIABLE runtime_folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    add_link_options(-shared-libsan "LINKER:-rpath,${runtime_folder}")
  endif()
endif()

if(ZVK_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang" OR NOT ZVK_SANITIZERS MATCHES "address")
    message(FATAL_ERROR "ZVK_FUZZ needs clang++, and 'address' in ZVK_SANITIZERS")
  endif()
  # The instrumented code reports to a fuzzer which code an input reaches. Other programs ignore these reports.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# In released programs a memory error ends the program, so that nobody can exploit the error. Builds with
# sanitizers leave out these checks, because they would hide the reports of the sanitizers.
option(ZVK_HARDENING "Harden the programs against memory errors (not in Debug builds)" ON)
if(ZVK_HARDENING AND NOT ZVK_SANITIZERS AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  add_compile_options(-fstack-protector-strong -fstack-clash-protection)
  add_compile_definitions(_FORTIFY_SOURCE=2 _GLIBCXX_ASSERTIONS)
  add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-fcf-protection ZVK_HAS_CF_PROTECTION)  # x86 only
  if(ZVK_HAS_CF_PROTECTION)
    add_compile_options(-fcf-protection)
  endif()
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # The cache ignores the paths of the source and build folders, so that all clones of the repository share
  # objects. The compiler reports to the cache what a precompiled header contains.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
    CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # CMake's default options hide the paths of precompiled headers from the cache. -fno-pch-timestamp keeps the
    # times of headers out of a precompiled header, because new times would make the cache miss.
    set(CMAKE_CXX_COMPILE_OPTIONS_CREATE_PCH
      -Xclang -emit-pch -Xclang -fno-pch-timestamp -include <PCH_HEADER> -x c++-header)
    set(CMAKE_CXX_COMPILE_OPTIONS_USE_PCH -include-pch <PCH_FILE>)
  endif()
endif()
