#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/zunrtcp/CommandLine/Command.h"
#include "tools/zunrtcp/CommandLine/Input.h"
#include "tools/zunrtcp/DecodeCommand.h"
#include "tools/zunrtcp/InputError.h"
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
  decode
      ->add_option("--from", arguments->from,
                   "only from this time on: seconds since the first record, or 2026-11-21T11:02:33 in UTC")
      ->excludes("--hex");
  decode->add_option("--to", arguments->to, "only up to this time")->excludes("--hex");
}

void DefineOutput(DecodeArguments* arguments, CLI::App* decode) {
  DecodeOptions& options = arguments->options;
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
  options.dialect = arguments.dialect == "house" ? ZUN_RTCP_DIALECT_HOUSE : ZUN_RTCP_DIALECT_REGISTERED;
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
  decode
      ->add_option("--dialect", arguments->dialect,
                   "registered: as the RFCs say; house: as this system's own peers speak")
      ->check(CLI::IsMember({"registered", "house"}))
      ->capture_default_str();
  DefineFilter(arguments.get(), decode);
  DefineOutput(arguments.get(), decode);
  return {decode, [arguments] { return RunDecode(OptionsOf(*arguments), &std::cout); }};
}

}  // namespace zunrtcp
