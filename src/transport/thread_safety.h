#pragma once

// Macros that mark which lock guards which data. The thread safety analysis of clang checks these
// marks at compile time. Other compilers ignore the marks.

#ifdef __clang__
#define ZVK_THREAD_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define ZVK_THREAD_ATTRIBUTE(attribute)
#endif

/// The class is a lock.
#define ZVK_CAPABILITY(name) ZVK_THREAD_ATTRIBUTE(capability(name))
/// The class holds a lock during its lifetime.
#define ZVK_SCOPED_CAPABILITY ZVK_THREAD_ATTRIBUTE(scoped_lockable)
/// Only a thread that holds the lock may use the variable.
#define ZVK_GUARDED_BY(lock) ZVK_THREAD_ATTRIBUTE(guarded_by(lock))
/// A thread that needs both the marked lock and `lock` takes the marked lock first.
#define ZVK_ACQUIRED_BEFORE(lock) ZVK_THREAD_ATTRIBUTE(acquired_before(lock))
/// The function locks.
#define ZVK_ACQUIRE(...) ZVK_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
/// The function unlocks.
#define ZVK_RELEASE(...) ZVK_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
