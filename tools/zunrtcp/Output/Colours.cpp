#include "tools/zunrtcp/Output/Colours.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace zunrtcp {

namespace {

const char* Sequence(Ink ink) {
  switch (ink) {
    case Ink::Place:
      return "\033[36m";  // cyan
    case Ink::Kind:
      return "\033[1m";  // bold
    case Ink::Aside:
      return "\033[2m";  // faint
    case Ink::Trouble:
      return "\033[1;31m";  // bold red
    case Ink::Plain:
      break;
  }
  return "";
}

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

}  // namespace

std::string Colours::In(Ink ink, const std::string& words) const {
  if (!are_on_ || ink == Ink::Plain) return words;
  return Sequence(ink) + words + "\033[0m";
}

bool TerminalWantsColours() {
  return isatty(STDOUT_FILENO) != 0 && Environment("NO_COLOR").empty() && Environment("TERM") != "dumb";
}

}  // namespace zunrtcp
