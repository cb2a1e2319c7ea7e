#include <iostream>
#include <memory>
#include <string>

#include "tools/zunrtcp/CommandLine/Command.h"
#include "tools/zunrtcp/CommandLine/Input.h"
#include "tools/zunrtcp/StatsCommand.h"

namespace zunrtcp {

namespace {

// As they are given.
struct StatsArguments {
  StatsOptions options;
  std::string dialect = "registered";
};

StatsOptions OptionsOf(const StatsArguments& arguments) {
  StatsOptions options = arguments.options;
  options.dialect = DialectNamed(arguments.dialect);
  return options;
}

}  // namespace

Command DefineStats(CLI::App* tool) {
  const auto arguments = std::make_shared<StatsArguments>();
  StatsOptions& options = arguments->options;
  CLI::App* stats =
      tool->add_subcommand("stats",
                           "Tells what the RTCP of a pcap or pcapng file says of each stream: reports, loss, jitter, "
                           "round trip, NACK, PLI,\n"
                           "FIR, REMB, TMMBR, transport-wide and CCFB feedback; as tables unless told otherwise.\n"
                           "Examples: zunrtcp stats call.pcap; zunrtcp stats call.pcap --html report.html; zunrtcp "
                           "stats --csv - < call.pcap\n"
                           "Exit status: 0, or 2 when the capture or the arguments are bad.");
  stats->add_option("CAPTURE", options.input.path, "the capture file; - for standard input")->required();
  stats
      ->add_option("--dialect", arguments->dialect,
                   "registered: as the RFCs say; house: as this system's own peers speak")
      ->check(CLI::IsMember({"registered", "house"}))
      ->capture_default_str();
  DefinePorts(&options.input, stats);
  CLI::Option* json = stats->add_flag("--json", options.json, "one JSON object, with all time lines");
  stats->add_flag("--csv", options.csv, "a line for each value of each time line and for each event")->excludes(json);
  stats->add_option("--html", options.html, "write a page with all time lines, for a browser; it needs no network")
      ->type_name("FILE");
  return {stats, [arguments] {
            RunStats(OptionsOf(*arguments), &std::cout);
            return kFine;
          }};
}

}  // namespace zunrtcp
