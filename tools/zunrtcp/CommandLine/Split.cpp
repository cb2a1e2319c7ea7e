#include <iostream>
#include <memory>
#include <string>

#include "tools/zunrtcp/CommandLine/Command.h"
#include "tools/zunrtcp/SplitCommand.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kMostBytes = 65535;  // of a datagram

}  // namespace

Command DefineSplit(CLI::App* tool) {
  struct Arguments {
    SplitOptions options;
    std::string dialect;
  };
  const auto arguments = std::make_shared<Arguments>();
  SplitOptions& options = arguments->options;
  CLI::App* split = tool->add_subcommand(
      "split",
      "Writes each datagram of a text of hex digits, or of JSON, as datagrams of a limited size: as many whole packets "
      "in\n"
      "each as fit. Prints a line of hex digits for each.\n"
      "Exit status: 0 when all is written, 2 when a packet does not fit or cannot be read, or the arguments are bad.");
  split->add_option("FILE", options.path, "the file; - for standard input")->required();
  split->add_option("--max-size", options.max_size, "bytes of a datagram")
      ->type_name("N")
      ->required()
      ->check(CLI::Range(std::size_t{1}, kMostBytes));
  split->add_option("--repeat", options.repeated, "repeat the first N packets in every datagram")->type_name("N");
  split->add_flag("--json", options.json, "the file is JSON as decode --json prints it (docs/json.md)");
  split->add_option("--dialect", arguments->dialect, "registered unless told otherwise; JSON may name another")
      ->check(CLI::IsMember({"registered", "house"}));
  return {split, [arguments] {
            SplitOptions given = arguments->options;
            if (!arguments->dialect.empty()) {
              given.dialect = DialectNamed(arguments->dialect);
            }
            return RunSplit(given, &std::cout);
          }};
}

}  // namespace zunrtcp
