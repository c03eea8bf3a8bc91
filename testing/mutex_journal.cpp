#include "testing/mutex_journal.h"

#include <algorithm>

namespace support {

namespace {
MutexJournal* currentJournal = nullptr;
}

MutexJournal::MutexJournal() {
  currentJournal = this;
}

MutexJournal::~MutexJournal() {
  currentJournal = nullptr;
}

void MutexJournal::record(char call, const pthread_mutex_t* mutex) {
  const auto known = std::ranges::find(m_Mutexes, mutex);
  const auto index = known - m_Mutexes.begin();
  if (known == m_Mutexes.end()) {
    m_Mutexes.push_back(mutex);
  }
  if (!m_Text.empty()) {
    m_Text += ' ';
  }
  m_Text += call;
  m_Text += static_cast<char>('A' + index);
}

MutexJournal* MutexJournal::current() {
  return currentJournal;
}

}  // namespace support

using support::MutexJournal;

// The linker's --wrap requires these names.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" {

int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __real_pthread_mutex_unlock(pthread_mutex_t* mutex);

int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
  const int result = __real_pthread_mutex_lock(mutex);
  if (MutexJournal* const journal = MutexJournal::current()) {
    journal->record(result == 0 ? '+' : '!', mutex);
  }
  return result;
}

int __wrap_pthread_mutex_unlock(pthread_mutex_t* mutex) {
  if (MutexJournal* const journal = MutexJournal::current()) {
    journal->record('-', mutex);
  }
  return __real_pthread_mutex_unlock(mutex);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)
