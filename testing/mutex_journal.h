#pragma once

#include <pthread.h>
#include <string>
#include <vector>

namespace support {

/// Records the calls of pthread_mutex_lock and pthread_mutex_unlock while the object exists. Only
/// one object of this class may exist at a time. The linker's --wrap redirects the calls.
class MutexJournal {
 public:
  MutexJournal();
  ~MutexJournal();
  MutexJournal(const MutexJournal&) = delete;
  MutexJournal& operator=(const MutexJournal&) = delete;

  /// Returns the calls so far, separated by spaces: "+A" is a lock, "-A" an unlock, "!A" a failed
  /// lock. The letter stands for the mutex; letters are given in the order of first use.
  const std::string& text() const { return m_Text; }

  // For the wrappers of the two calls.
  void record(char call, const pthread_mutex_t* mutex);
  static MutexJournal* current();

 private:
  std::string m_Text;
  std::vector<const pthread_mutex_t*> m_Mutexes;
};

}  // namespace support
