#pragma once

// Which lock guards what, for clang's thread safety analysis, which checks it as it compiles.
// Nothing to other compilers.

#ifdef __clang__
#define ZVK_THREAD_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define ZVK_THREAD_ATTRIBUTE(attribute)
#endif

#define ZVK_CAPABILITY(name) ZVK_THREAD_ATTRIBUTE(capability(name))
#define ZVK_SCOPED_CAPABILITY ZVK_THREAD_ATTRIBUTE(scoped_lockable)
/// To be touched only by a holder of the lock.
#define ZVK_GUARDED_BY(lock) ZVK_THREAD_ATTRIBUTE(guarded_by(lock))
/// The order of two locks that are held together.
#define ZVK_ACQUIRED_BEFORE(lock) ZVK_THREAD_ATTRIBUTE(acquired_before(lock))
#define ZVK_ACQUIRE(...) ZVK_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define ZVK_RELEASE(...) ZVK_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
