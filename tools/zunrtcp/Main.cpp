// The command line of zunrtcp.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "tools/zunrtcp/DecodeCommand.h"
#include "tools/zunrtcp/InputError.h"

namespace {

int Run(int argc, char** argv) {
  CLI::App app("Looks at RTCP with the zunrtcp library.", "zunrtcp");
  app.require_subcommand(1);

  zunrtcp::DecodeOptions options;
  std::vector<std::uint16_t> ports;
  CLI::App* decode = app.add_subcommand(
      "decode",
      "Prints the RTCP of a pcap or pcapng file, packet by packet and field by field. What is refused is shown with "
      "its\n"
      "reason, the place and the bytes around it. In the house's dialect each datagram is also written back with the\n"
      "library: the output says whether the bytes are the same and, where not, which stated rule explains it.\n"
      "Exit status: 0 when nothing is refused, or in the house's dialect all is identical or explained, 1 when not, 2 "
      "when\n"
      "the capture or the arguments are bad.");
  decode->add_option("CAPTURE", options.capture, "the capture file, or with --hex the text; - for standard input")
      ->required();
  std::string dialect = "registered";
  decode->add_option("--dialect", dialect, "registered: as the RFCs say; house: as this system's own peers speak")
      ->check(CLI::IsMember({"registered", "house"}))
      ->capture_default_str();
  decode->add_flag(
      "--hex", options.hex,
      "the file is text: a datagram in hex digits on each line, or hex dumps with offsets, ASCII columns and "
      "the like");
  decode->add_option("--port", ports, "only datagrams from or to this UDP port (may be given several times)")
      ->check(CLI::Range(1, 65535))
      ->take_all()
      ->expected(1);
  decode->add_option("--limit", options.limit, "print only the first N datagrams, but count all")->type_name("N");
  decode->add_flag("--verbose", options.verbose, "show everything, and what the library logs");
  decode->add_flag("--json", options.json, "one JSON object on a line for each datagram, the last with the totals");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? zunrtcp::kFine : zunrtcp::kBadInput;
  }
  options.dialect = dialect == "house" ? ZUN_RTCP_DIALECT_HOUSE : ZUN_RTCP_DIALECT_REGISTERED;
  options.ports.insert(ports.begin(), ports.end());
  const zunrtcp::ExitStatus status = zunrtcp::RunDecode(options, &std::cout);
  std::cout.flush();
  if (!std::cout) throw zunrtcp::InputError("standard output cannot be written");
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cout.flush();
    (void)std::fprintf(stderr, "zunrtcp: %s\n", error.what());
    return zunrtcp::kBadInput;
  }
}
