#pragma once

#include <pthread.h>

#include "transport/thread_safety.h"

/// A POSIX mutex with its attributes, and a lock that holds it for a scope:
///
///     const PosixMutex::Lock lock(m_Mutex);  // unlocks at the end of the scope
class ZVK_CAPABILITY("mutex") PosixMutex {
 public:
  enum class Kind {
    Default,
    /// If the thread that holds the mutex locks it again, the second lock fails. With another kind
    /// of mutex the second lock might block for ever.
    ErrorChecking,
  };

  /// Creates an unlocked mutex.
  explicit PosixMutex(Kind kind = Kind::Default) {
    pthread_mutexattr_init(&m_MutexAttr);
    if (kind == Kind::ErrorChecking) {
      pthread_mutexattr_settype(&m_MutexAttr, PTHREAD_MUTEX_ERRORCHECK);
    }
    pthread_mutex_init(&m_Mutex, &m_MutexAttr);
  }
  ~PosixMutex() {
    pthread_mutex_destroy(&m_Mutex);
    pthread_mutexattr_destroy(&m_MutexAttr);
  }
  PosixMutex(const PosixMutex&) = delete;
  PosixMutex& operator=(const PosixMutex&) = delete;

  /// Holds the mutex until the end of the scope. Unlocks the mutex only if this object locked it.
  /// So if one operation calls another operation with the same error-checking mutex, the inner
  /// operation runs under the lock of the outer operation and leaves the mutex locked.
  class ZVK_SCOPED_CAPABILITY Lock {
   public:
    explicit Lock(PosixMutex& mutex) ZVK_ACQUIRE(mutex)
        : m_Mutex(&mutex.m_Mutex), m_Locked(pthread_mutex_lock(m_Mutex) == 0) {}
    ~Lock() ZVK_RELEASE() {
      if (m_Locked) {
        pthread_mutex_unlock(m_Mutex);
      }
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    pthread_mutex_t* m_Mutex;
    bool m_Locked;
  };

 private:
  pthread_mutex_t m_Mutex{};
  pthread_mutexattr_t m_MutexAttr{};
};
