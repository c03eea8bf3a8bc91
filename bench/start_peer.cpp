// The peer of start_up: the cheapest C++ program that links the same libraries. It prints one line.

#include <cstdio>

int main() {
  std::puts("One line.");
  return 0;
}
