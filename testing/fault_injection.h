#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <sys/types.h>

/// Makes chosen calls of the program fail. Each function that replaces a system or library call (a
/// double) first checks whether the call has a fault.
namespace support {

/// What a test does to a call: the call fails, or it moves fewer bytes.
struct Fault {
  const char* name;
  int error;               ///< the errno value of the failure; 0 if the call does not fail
  std::size_t maxBytes{};  ///< if `error` is 0: how many bytes a transfer moves at most
};

/// While the object exists, the `first`-th call of the function `call` has the fault `fault`. If
/// `lasting` is true, all later calls of this function have the fault, too. "new" stands for every
/// form of operator new.
///
///     FaultInjection injection({.call = "write", .fault = {"EIO", EIO}, .first = 2});
///
/// While a printer is silent, the program calls select many times, and nothing changes between
/// these calls. So if calls of select follow each other, only the first three and every thousandth
/// are counted. After the first fault of a plan with `lasting`, every call of select is counted.
class FaultInjection {
 public:
  struct Plan {
    std::string_view call;
    Fault fault;
    int first = 1;
    bool lasting = false;
  };

  explicit FaultInjection(const Plan& plan);
  ~FaultInjection();
  FaultInjection(const FaultInjection&) = delete;
  FaultInjection& operator=(const FaultInjection&) = delete;

  /// Returns true if a call has had the fault.
  bool wasReached() const { return m_Count >= m_Plan.first; }
  /// Returns how many calls of the plan's function were counted.
  int count() const { return m_Count; }

  /// Counts a call. Returns the fault that this call has, or nullptr if it has none. Throws
  /// `EndlessRun` when the calls of all functions together reach two million.
  const Fault* faultOf(std::string_view call);

  /// Returns the existing object of this class, or nullptr if there is none.
  static FaultInjection* current();

 private:
  bool isRepeatedProbe(std::string_view call);

  Plan m_Plan;
  int m_Count = 0;
  long m_Calls = 0;
  int m_Probes = 0;
};

/// The exception that ends a run which would otherwise never end.
struct EndlessRun {};

/// A call that a double carries out. The double first creates the object, and then checks whether
/// the call must fail. Calls that the double itself makes while the object exists never fail.
///
///     const InterceptedCall call("tcgetattr");
///     if (call.fails()) {
///       return -1;  // errno is set
///     }
class InterceptedCall {
 public:
  explicit InterceptedCall(std::string_view name);
  ~InterceptedCall();
  InterceptedCall(const InterceptedCall&) = delete;
  InterceptedCall& operator=(const InterceptedCall&) = delete;

  /// Returns the fault that this call has, or nullptr if it has none.
  const Fault* fault() const { return m_Fault; }
  /// If the call must end with an error, sets errno and returns true.
  bool fails() const;
  /// If the call must end with an error, returns the negative errno value. Otherwise returns 0.
  int result() const { return m_Fault == nullptr ? 0 : -m_Fault->error; }
  /// Returns the result of a transfer that fails or moves no bytes. Otherwise returns
  /// `std::nullopt` and limits `size` to the bytes that the transfer may move.
  std::optional<ssize_t> cut(std::size_t& size) const;

 private:
  const Fault* m_Fault;
};

}  // namespace support
