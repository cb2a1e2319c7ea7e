#include <iostream>
#include <memory>

#include "tools/zunrtcp/CheckCommand.h"
#include "tools/zunrtcp/CommandLine/Command.h"
#include "tools/zunrtcp/CommandLine/Input.h"

namespace zunrtcp {

namespace {

struct CheckArguments {
  CheckOptions options;
  std::string dialect = "house";
};

}  // namespace

Command DefineCheck(CLI::App* tool) {
  const auto arguments = std::make_shared<CheckArguments>();
  CheckOptions& options = arguments->options;
  CLI::App* check = tool->add_subcommand(
      "check",
      "Reads every packet in a dialect and writes it back in the same. Prints how many of each kind come back "
      "identical, "
      "or\n"
      "otherwise as a stated rule explains; how many are refused by such a rule; and how many differ or are refused "
      "without\n"
      "one.\n"
      "Exit status: 0 when all is identical or explained, 1 when not, 2 when the file or the arguments are bad.");
  DefineInput(&options.input, check);
  check
      ->add_option("--dialect", arguments->dialect,
                   "registered: as the RFCs say; house: as this system's own peers speak")
      ->check(CLI::IsMember({"registered", "house"}))
      ->capture_default_str();
  check->add_flag("--json", options.json, "as one JSON object");
  check->add_option("--troubles", options.troubles, "tell the first N of what is unexplained or malformed one by one")
      ->type_name("N")
      ->capture_default_str();
  return {check, [arguments] {
            arguments->options.dialect = DialectNamed(arguments->dialect);
            return RunCheck(arguments->options, &std::cout);
          }};
}

}  // namespace zunrtcp
