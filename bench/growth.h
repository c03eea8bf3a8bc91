#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

/// Measures how the cost of a task grows with its size, in instructions. The count of instructions
/// is the same on every machine and with every load.
namespace bench {

/// The largest allowed exponents. A cost that is proportional to the size has the exponent 1.
inline constexpr double LinearBar = 1.05;
inline constexpr double SortingBar = 1.15;

using Task = std::function<void()>;

/// Registers a task. `make` gets a size and returns the task for this size. The sizes are
/// `smallest` and five doublings of it.
void addGrowth(const std::string& name, std::size_t smallest, double bar,
               std::function<Task(std::size_t)> make);

/// Does the same for tasks of any type.
///
///     bench::growth("Base64 encode, bytes", 4096, [](std::size_t size) {
///       return [job = Job(size)]() mutable { encode(job); };
///     });
template <typename Make>
void growth(const std::string& name, std::size_t smallest, Make make, double bar = LinearBar) {
  addGrowth(name, smallest, bar, [make](std::size_t size) -> Task {
    // A function object must be copyable, and a task need not be.
    auto task = std::make_shared<decltype(make(size))>(make(size));
    return [task] {
      (*task)();
    };
  });
}

/// Counts the instructions of all registered tasks and adds a row for each task. The program must
/// run in callgrind with the options --collect-atstart=no and --callgrind-out-file=`dumps`. Returns
/// false if it does not.
bool measureGrowth(const std::string& dumps);

}  // namespace bench
