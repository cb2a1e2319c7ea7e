// Colours for a terminal.
#ifndef TOOLS_ZUNRTCP_OUTPUT_COLOURS_H
#define TOOLS_ZUNRTCP_OUTPUT_COLOURS_H

#include <string>

namespace zunrtcp {

// What the words are.
enum class Ink { Plain, Place, Kind, Aside, Trouble };

class Colours {
 public:
  explicit Colours(bool are_on) : are_on_(are_on) {}

  std::string In(Ink ink, const std::string& words) const;

 private:
  bool are_on_;
};

// Whether standard output is a terminal that has colours, and NO_COLOR (no-color.org) does not ask for none.
bool TerminalWantsColours();

}  // namespace zunrtcp

#endif
