// The page of `stats --html`, which the build puts together from the files beside this one and the charting library.
#ifndef TOOLS_ZUNRTCP_STATS_PAGE_PAGE_H
#define TOOLS_ZUNRTCP_STATS_PAGE_PAGE_H

#include <string_view>

namespace zunrtcp {

// All of it, with the mark @DATA@ where the data belongs.
std::string_view Page();

}  // namespace zunrtcp

#endif
