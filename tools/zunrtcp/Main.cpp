// The command line of zunrtcp.
#include <cstdio>
#include <exception>
#include <iostream>

#include "tools/zunrtcp/CommandLine/Command.h"
#include "tools/zunrtcp/InputError.h"

namespace {

int Run(int argc, char** argv) {
  CLI::App app("Looks at RTCP with the zunrtcp library.", "zunrtcp");
  app.require_subcommand(1);
  const zunrtcp::Command commands[] = {zunrtcp::DefineDecode(&app), zunrtcp::DefineCheck(&app),
                                       zunrtcp::DefineEncode(&app), zunrtcp::DefineSplit(&app),
                                       zunrtcp::DefineStats(&app),  zunrtcp::DefineLive(&app)};
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? zunrtcp::kFine : zunrtcp::kBadInput;
  }
  zunrtcp::ExitStatus status = zunrtcp::kFine;
  for (const zunrtcp::Command& command : commands) {
    if (command.app->parsed()) status = command.run();
  }
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
