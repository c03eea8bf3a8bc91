#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <sys/types.h>

/// Calls of the program that fail although the doubles would answer them.
namespace support {

/// How a call fails.
struct Fault {
  const char* name;
  int error;           ///< the errno that it ends with; 0: none
  std::size_t most{};  ///< without an error: how many bytes a transfer moves at most
};

/// Makes one call fail, for as long as it lives: the `first`-th of its name, and all that follow
/// when it is lasting. The names are those of the functions; "new" stands for every allocation.
///
/// Of calls of select with nothing between them, as in a silence, only the first three and each
/// thousandth count: the others find the same state.
class Disturbance {
 public:
  struct Plan {
    std::string_view call;
    Fault fault;
    int first = 1;
    bool lasting = false;
  };

  explicit Disturbance(const Plan& plan);
  ~Disturbance();
  Disturbance(const Disturbance&) = delete;
  Disturbance& operator=(const Disturbance&) = delete;

  /// Whether a call has failed.
  bool wasReached() const { return m_Count >= m_Plan.first; }
  /// How many calls of the name there were.
  int count() const { return m_Count; }

  /// How the call that begins now is to fail, or null. Throws `Endless` at the two-millionth call.
  const Fault* faultOf(std::string_view call);

  static Disturbance* current();

 private:
  bool isRepeatedProbe(std::string_view call);

  Plan m_Plan;
  int m_Count = 0;
  long m_Calls = 0;
  int m_Probes = 0;
};

/// Ends a run that does not end by itself.
struct Endless {};

/// A call of the program, for as long as a double carries it out: what the double does itself is
/// not disturbed.
class OutsideCall {
 public:
  explicit OutsideCall(std::string_view name);
  ~OutsideCall();
  OutsideCall(const OutsideCall&) = delete;
  OutsideCall& operator=(const OutsideCall&) = delete;

  /// How the call is to fail; null for not at all.
  const Fault* fault() const { return m_Fault; }
  /// Whether it is to end with an error, to which errno is set then.
  bool fails() const;
  /// The negative errno of such a call, 0 for others.
  int result() const { return m_Fault == nullptr ? 0 : -m_Fault->error; }
  /// What a transfer that is to fail returns; else nothing, and `size` is cut to what it may move.
  std::optional<ssize_t> cut(std::size_t& size) const;

 private:
  const Fault* m_Fault;
};

}  // namespace support
