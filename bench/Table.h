// The one table of all lines.
#ifndef BENCH_TABLE_H
#define BENCH_TABLE_H

#include <map>
#include <string>
#include <vector>

#include "bench/Bench.h"

namespace bench {

// What was measured of a line, over its repetitions.
struct Result {
  std::vector<double> nanoseconds;
  std::vector<double> cycles;
  double allocations = 0;
};
using Results = std::map<std::string, Result>;

std::string NameOf(const Line& line);

// Who measures, with what: the compilers and their flags, the processor, the date.
void PrintMachine();

// Prints the lines that were run; returns how many goals were missed.
int PrintTable(const std::vector<Line>& lines, const Results& results);

// Prints what was measured of each line as comma-separated values.
void PrintCsv(const std::vector<Line>& lines, const Results& results);

}  // namespace bench

#endif
