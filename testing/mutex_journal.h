#pragma once

#include <pthread.h>
#include <string>
#include <vector>

namespace support {

/// Records the mutex calls of a test's program for as long as it lives (by the linker's --wrap of
/// pthread_mutex_lock and pthread_mutex_unlock). One at a time.
class MutexJournal {
 public:
  MutexJournal();
  ~MutexJournal();
  MutexJournal(const MutexJournal&) = delete;
  MutexJournal& operator=(const MutexJournal&) = delete;

  /// The calls so far, each with a letter for its mutex in the order of their first use: "+A" a
  /// lock, "-A" an unlock, "!A" a lock that failed.
  const std::string& text() const { return m_Text; }

  void record(char call, const pthread_mutex_t* mutex);
  static MutexJournal* current();

 private:
  std::string m_Text;
  std::vector<const pthread_mutex_t*> m_Mutexes;
};

}  // namespace support
