// Prints the rows of a file as one table. A bar is the largest allowed figure of a row. The program
// counts how many bars are met and missed. The exit status is 1 if a bar is missed or the file has
// no bar.
//
// Usage: bench_table FILE

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// The columns of a row, in their order in the file.
enum Column { Work, Peer, Ours, Theirs, Low, Median, High, Limit, Columns };

/// Returns the cells of a row, which tabs separate.
std::vector<std::string> cells(const std::string& line) {
  std::vector<std::string> result;
  std::istringstream stream(line);
  for (std::string cell; std::getline(stream, cell, '\t');) {
    result.push_back(cell);
  }
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: bench_table FILE\n", stderr);
    return 2;
  }
  constexpr const char* format = "%-36s %-28s %14s %12s %9s %19s %6s  %s\n";
  std::printf(format, "work", "peer", "ours", "peer", "ratio", "spread", "bar", "");
  int met = 0;
  int missed = 0;
  std::ifstream file(argv[1]);
  for (std::string line; std::getline(file, line);) {
    const std::vector<std::string> row = cells(line);
    if (row.size() != Columns) {
      std::fprintf(stderr, "bench_table: %s: expected a row of 8 cells\n", line.c_str());
      return 2;
    }
    const double limit = std::atof(row[Limit].c_str());
    const bool hasBar = limit > 0;
    const bool isMet = std::atof(row[Low].c_str()) <= limit;
    const std::string spread = row[Low] == row[High] ? "" : row[Low] + " to " + row[High];
    if (hasBar) {
      ++(isMet ? met : missed);
    }
    std::printf(format, row[Work].c_str(), row[Peer].c_str(), row[Ours].c_str(),
                row[Theirs].c_str(), row[Median].c_str(), spread.c_str(),
                hasBar ? row[Limit].c_str() : "-", !hasBar ? "" : (isMet ? "met" : "MISSED"));
  }
  std::printf("%d bars met, %d missed\n", met, missed);
  return missed == 0 && met > 0 ? 0 : 1;
}
