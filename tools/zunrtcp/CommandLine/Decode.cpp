#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/zunrtcp/CommandLine/Command.h"
#include "tools/zunrtcp/CommandLine/Input.h"
#include "tools/zunrtcp/DecodeCommand.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/LiveCommand.h"
#include "tools/zunrtcp/Output/Colours.h"

namespace zunrtcp {

namespace {

// As they are given.
struct DecodeArguments {
  DecodeOptions options;
  std::string dialect = "registered";
  std::string colour = "auto";
  std::vector<std::string> sources;
  std::string from;
  std::string to;
};

void DefineFilter(DecodeArguments* arguments, CLI::App* decode) {
  Filter& filter = arguments->options.filter;
  decode
      ->add_option("--ssrc", arguments->sources,
                   "only datagrams with a packet from or about this SSRC, 0x1234abcd or decimal")
      ->take_all()
      ->expected(1);
  decode
      ->add_option("--type", filter.types,
                   "only datagrams with such a packet: a name (nack), a type (205) or type and FMT (205/1)")
      ->take_all()
      ->expected(1);
  decode->add_flag("--only-refused", filter.only_refused, "only datagrams of which something is refused");
}

void DefineTimes(DecodeArguments* arguments, CLI::App* decode) {
  decode
      ->add_option("--from", arguments->from,
                   "only from this time on: seconds since the first record, or 2026-11-21T11:02:33 in UTC")
      ->excludes("--hex");
  decode->add_option("--to", arguments->to, "only up to this time")->excludes("--hex");
}

void DefineOutput(DecodeArguments* arguments, CLI::App* decode) {
  DecodeOptions& options = arguments->options;
  decode
      ->add_option("--dialect", arguments->dialect,
                   "registered: as the RFCs say; house: as this system's own peers speak")
      ->check(CLI::IsMember({"registered", "house"}))
      ->capture_default_str();
  decode->add_option("--limit", options.limit, "print only the first N datagrams, but count all")->type_name("N");
  decode->add_flag("--verbose", options.verbose, "show everything, and what the library logs");
  decode->add_flag("--json", options.json, "one JSON object on a line for each datagram, the last with the totals");
  decode->add_option("--color,--colour", arguments->colour, "auto: on a terminal, unless NO_COLOR is set")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
}

std::optional<TimeLimit> TimeOf(const std::string& option, const std::string& text) {
  if (text.empty()) return std::nullopt;
  std::optional<TimeLimit> limit = ParseTimeLimit(text);
  if (!limit) throw InputError(option + ": no time: " + text);
  return limit;
}

DecodeOptions OptionsOf(const DecodeArguments& arguments) {
  DecodeOptions options = arguments.options;
  options.dialect = DialectNamed(arguments.dialect);
  for (const std::string& text : arguments.sources) {
    const std::optional<std::uint32_t> source = ParseSource(text);
    if (!source) throw InputError("--ssrc: no SSRC: " + text);
    options.filter.sources.insert(*source);
  }
  options.filter.from = TimeOf("--from", arguments.from);
  options.filter.to = TimeOf("--to", arguments.to);
  options.in_colour = arguments.colour == "always" || (arguments.colour == "auto" && TerminalWantsColours());
  return options;
}

}  // namespace

Command DefineDecode(CLI::App* tool) {
  const auto arguments = std::make_shared<DecodeArguments>();
  CLI::App* decode = tool->add_subcommand(
      "decode",
      "Prints the RTCP of a pcap or pcapng file, packet by packet and field by field. What is refused is shown with "
      "its\n"
      "reason, the place and the bytes around it. In the house's dialect each datagram is also written back with the\n"
      "library: the output says whether the bytes are the same and, where not, which stated rule explains it.\n"
      "Exit status: 0 when nothing is refused, or in the house's dialect all is identical or explained, 1 when not, 2 "
      "when\n"
      "the capture or the arguments are bad.");
  DefineInput(&arguments->options.input, decode);
  DefineFilter(arguments.get(), decode);
  DefineTimes(arguments.get(), decode);
  DefineOutput(arguments.get(), decode);
  return {decode, [arguments] { return RunDecode(OptionsOf(*arguments), &std::cout); }};
}

Command DefineLive(CLI::App* tool) {
  struct LiveArguments {
    LiveOptions options;
    DecodeArguments decode;
  };
  const auto arguments = std::make_shared<LiveArguments>();
  CLI::App* live = tool->add_subcommand(
      "live",
      "Prints RTCP as decode does, while it happens; Ctrl-C ends it and prints the totals.\n"
      "Examples: zunrtcp live --interface eth0 --port 5005; zunrtcp live --listen 0.0.0.0:5005 --type nack\n"
      "Exit status: as that of decode.");
  CLI::Option_group* where = live->add_option_group("where");
  where->add_option("--interface", arguments->options.interface, "watch this network interface; any: all of them");
  where->add_option("--listen", arguments->options.listen, "receive on this address and UDP port, as 0.0.0.0:5005");
  where->require_option(1);
  DefinePorts(&arguments->decode.options.input, live);
  DefineFilter(&arguments->decode, live);
  DefineOutput(&arguments->decode, live);
  return {live, [arguments] {
            LiveOptions options = arguments->options;
            options.decode = OptionsOf(arguments->decode);
            return RunLive(options, &std::cout);
          }};
}

}  // namespace zunrtcp
