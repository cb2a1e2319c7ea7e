#include "tools/zunrtcp/CommandLine/Input.h"

namespace zunrtcp {

void DefineInput(InputOptions* options, CLI::App* command) {
  command->add_option("CAPTURE", options->path, "the capture file, or with --hex the text; - for standard input")
      ->required();
  command->add_flag("--hex", options->hex,
                    "the file is text: a datagram in hex digits on each line, or hex dumps with offsets, ASCII columns "
                    "and the like");
  DefinePorts(options, command)->excludes("--hex");
}

CLI::Option* DefinePorts(InputOptions* options, CLI::App* command) {
  return command
      ->add_option("--port", options->ports, "only datagrams from or to this UDP port (may be given several times)")
      ->check(CLI::Range(1, 65535))
      ->take_all()
      ->expected(1);
}

}  // namespace zunrtcp
