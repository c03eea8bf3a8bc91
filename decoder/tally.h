#pragma once

#include <cstddef>
#include <string>

#include "decoder/packet.h"

namespace decoder {

/// Counts packets and problems, passes them on to another report, and computes the exit status.
class Tally : public Report {
 public:
  explicit Tally(Report& next) : m_Next(next) {}

  void beginInput(const std::string& name) override {
    ++m_Inputs;
    m_HasFound = false;
    m_Next.beginInput(name);
  }
  void packet(const Packet& packet) override {
    found();
    ++m_Packets;
    m_IsComplete = m_IsComplete && isUnderstood(packet);
    m_Next.packet(packet);
  }
  void problem(const Problem& problem) override {
    found();
    m_IsComplete = false;
    m_Next.problem(problem);
  }
  void unreadable(const std::string& reason) override {
    found();
    m_IsReadable = false;
    m_Next.unreadable(reason);
  }

  std::size_t packets() const { return m_Packets; }

  /// Returns true if the current input has a packet or a problem, or cannot be read.
  bool hasFound() const { return m_HasFound; }

  /// Returns the exit status: 2 if an input could not be read; otherwise 1 if a packet was unknown
  /// or malformed, or if there was a problem; otherwise 3 if an input had neither a packet nor a
  /// problem; otherwise 0.
  int status() const {
    constexpr int unreadable = 2;
    constexpr int nothing = 3;
    if (!m_IsReadable) {
      return unreadable;
    }
    if (!m_IsComplete) {
      return 1;
    }
    return m_InputsWithFinds < m_Inputs ? nothing : 0;
  }

 private:
  void found() {
    m_InputsWithFinds += m_HasFound ? 0 : 1;
    m_HasFound = true;
  }

  Report& m_Next;
  std::size_t m_Packets = 0;
  std::size_t m_Inputs = 0;
  std::size_t m_InputsWithFinds = 0;
  bool m_HasFound = false;
  bool m_IsComplete = true;
  bool m_IsReadable = true;
};

}  // namespace decoder
