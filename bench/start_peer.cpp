// The peer of start_up: a minimal C++ program that links the same libraries as zvkconfig and prints
// one line.

#include <cstdio>

int main() {
  std::puts("One line.");
  return 0;
}
