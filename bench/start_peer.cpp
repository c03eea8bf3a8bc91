// The peer of start_up: a minimal C++ program that prints one line. It links the same libraries as
// the program that it is compared with.

#include <cstdio>

int main() {
  std::puts("One line.");
  return 0;
}
