#include <iostream>
#include <memory>
#include <string>

#include "tools/zunrtcp/CommandLine/Command.h"
#include "tools/zunrtcp/EncodeCommand.h"

namespace zunrtcp {

Command DefineEncode(CLI::App* tool) {
  struct Arguments {
    EncodeOptions options;
    std::string dialect;
  };
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* encode =
      tool->add_subcommand("encode",
                           "Makes bytes of JSON as decode --json prints it (docs/json.md): a line of hex digits for "
                           "each datagram, or a capture\n"
                           "file. What cannot be written is refused with the path of the field and the limit.\n"
                           "Exit status: 0 when all is written, 2 when something is refused or the arguments are bad.");
  encode->add_option("JSON", arguments->options.path, "the file; - for standard input")->required();
  encode
      ->add_option("--dialect", arguments->dialect,
                   "instead of the one that each datagram names (registered if it does not)")
      ->check(CLI::IsMember({"registered", "house"}));
  encode->add_option("-o,--output", arguments->options.capture, "write this capture file")->type_name("PCAP");
  return {encode, [arguments] {
            EncodeOptions options = arguments->options;
            if (!arguments->dialect.empty()) {
              options.dialect = DialectNamed(arguments->dialect);
            }
            return RunEncode(options, &std::cout);
          }};
}

}  // namespace zunrtcp
