// What the library's objects hold, as ranges and views of C++.
#ifndef TOOLS_ZUNRTCP_PACKET_LIBRARYVALUES_H
#define TOOLS_ZUNRTCP_PACKET_LIBRARYVALUES_H

#include <span>
#include <string_view>

#include "Zun/Utils/ZunString.h"

namespace zunrtcp {

// The elements of one of the library's vectors.
template <typename Vector>
auto Elements(const Vector& vector) {
  return std::span(vector.begin, vector.end);
}

// The bytes of one of its strings.
inline std::string_view BytesOf(const ZunString& string) { return {ZunStringCStr(&string), string.size}; }

}  // namespace zunrtcp

#endif
