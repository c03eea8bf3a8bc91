#pragma once

#include <cstddef>
#include <functional>

/// Counts the blocks that `action` takes by operator new.
std::size_t allocationsOf(const std::function<void()>& action);
