#pragma once

#include <cstdlib>
#include <string>

namespace support {

/// Sets an environment variable and removes it at the end of the scope.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const std::string& value) : m_Name(name) {
    ::setenv(name, value.c_str(), 1);
  }
  ~EnvironmentVariable() { ::unsetenv(m_Name); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  const char* m_Name;
};

}  // namespace support
