// Files that are read: "-" is standard input.
#ifndef TOOLS_ZUNRTCP_CAPTURE_INPUTPATH_H
#define TOOLS_ZUNRTCP_CAPTURE_INPUTPATH_H

#include <string>

namespace zunrtcp {

// What to call it.
std::string InputName(const std::string& path);

// InputError when there is no such file, or it cannot be read.
void CheckReadable(const std::string& path);

}  // namespace zunrtcp

#endif
