#pragma once

#include <cstddef>
#include <string>

#include "decoder/packet.h"

namespace decoder {

/// Hands everything on to another report and counts it.
class Tally : public Report {
 public:
  explicit Tally(Report& next) : m_Next(next) {}

  void beginInput(const std::string& name) override { m_Next.beginInput(name); }
  void packet(const Packet& packet) override {
    ++m_Packets;
    m_IsComplete = m_IsComplete && isUnderstood(packet);
    m_Next.packet(packet);
  }
  void problem(const Problem& problem) override {
    m_IsComplete = false;
    m_Next.problem(problem);
  }
  void unreadable(const std::string& reason) override {
    m_IsReadable = false;
    m_Next.unreadable(reason);
  }

  std::size_t packets() const { return m_Packets; }

  /// The exit status: 0 for all decoded, 1 for something that was no whole or known packet, 2 for
  /// an input that could not be read.
  int status() const {
    constexpr int unreadable = 2;
    return !m_IsReadable ? unreadable : m_IsComplete ? 0 : 1;
  }

 private:
  Report& m_Next;
  std::size_t m_Packets = 0;
  bool m_IsComplete = true;
  bool m_IsReadable = true;
};

}  // namespace decoder
