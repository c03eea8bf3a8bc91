#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace emulator {

/// A program that the radio has started. The destructor ends it.
class RadioProgram {
 public:
  virtual ~RadioProgram() = default;
  RadioProgram(const RadioProgram&) = delete;
  RadioProgram& operator=(const RadioProgram&) = delete;

  /// Returns true if the program has ended by itself.
  virtual bool hasEnded() = 0;

 protected:
  RadioProgram() = default;
};

/// Starts a program with its arguments.
using StartProgram =
    std::function<std::unique_ptr<RadioProgram>(const std::vector<std::string>& command)>;

/// Throws `std::runtime_error` if a radio cannot work on the interface: there is no such interface,
/// or a program is missing.
void requireRadio(const std::string& interface);

/// Starts a program as a child process, without standard input and output. The child ends with its
/// parent. Throws `std::runtime_error` if the program cannot be started.
std::unique_ptr<RadioProgram> startRadioProgram(const std::vector<std::string>& command);

}  // namespace emulator
