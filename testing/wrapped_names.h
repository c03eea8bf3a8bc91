#pragma once

/// The names of the C library's calls for the linker's --wrap. On 32-bit machines, calls with
/// 64-bit offsets and times have other names than in the source. zvk_wrap in cmake/compiler.cmake
/// passes the same names to the linker.
///
/// ZVK_CALL_WITH_TIME(RESULT, CALL, PARAMETERS) declares __real_CALL and __wrap_CALL.

#if __SIZEOF_LONG__ == 4 && defined(_FILE_OFFSET_BITS) && _FILE_OFFSET_BITS == 64
#define ZVK_FILE_OFFSET_NAME(prefix, call) __asm__(#prefix #call "64")
#else
#define ZVK_FILE_OFFSET_NAME(prefix, call)
#endif

#if __SIZEOF_LONG__ == 4 && defined(_TIME_BITS) && _TIME_BITS == 64
#define ZVK_TIME_NAME(prefix, call) __asm__(#prefix "__" #call "64")
#else
#define ZVK_TIME_NAME(prefix, call)
#endif

#define ZVK_CALL_WITH_FILE_OFFSET(result, call, parameters)            \
  result __real_##call parameters ZVK_FILE_OFFSET_NAME(__real_, call); \
  result __wrap_##call parameters ZVK_FILE_OFFSET_NAME(__wrap_, call);

#define ZVK_CALL_WITH_TIME(result, call, parameters)            \
  result __real_##call parameters ZVK_TIME_NAME(__real_, call); \
  result __wrap_##call parameters ZVK_TIME_NAME(__wrap_, call);
