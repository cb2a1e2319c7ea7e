// Strings against std::string: any sequence of operations, whose arguments may be parts of the string itself.
#include <array>

#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

struct Modelled {
  explicit Modelled(ZunAllocator* a) : string(a) {}
  String string;
  std::string model;
};

// Does one operation on both; `o` may be the same as `s`.
void Step(Input& input, Modelled& s, Modelled& o) {
  const std::size_t operation = input.Below(8);
  const std::size_t pos = input.Below(o.model.size() + 4);
  const std::size_t len = input.Below(300);
  const char c = static_cast<char>(input.U8());
  const bool begins_inside = pos <= o.model.size();
  const std::string part = begins_inside ? o.model.substr(pos, len) : std::string();
  switch (operation) {
    case 0:
      Check(ZunStringAssign(s.string, o.string) != nullptr, "a string is assigned");
      s.model = std::string(o.model);
      break;
    case 1:
      Check((ZunStringAssignSubstring(s.string, o.string, pos, len) != nullptr) == begins_inside, "it begins inside");
      if (begins_inside) s.model = part;
      break;
    case 2:
      Check(ZunStringAppend(s.string, o.string) != nullptr, "a string is appended");
      s.model += std::string(o.model);
      break;
    case 3:
      Check((ZunStringAppendSubstring(s.string, o.string, pos, len) != nullptr) == begins_inside, "it begins inside");
      if (begins_inside) s.model += part;
      break;
    case 4:
      Check(ZunStringAppendN(s.string, len, c) != nullptr, "bytes are appended");
      s.model.append(len, c);
      break;
    case 5:
      Check(ZunStringAppendChar(s.string, c) != nullptr, "a byte is appended");
      s.model += c;
      break;
    case 6: {
      // From the middle of the string, up to its first zero.
      const std::string text = begins_inside ? std::string(o.model.c_str() + pos) : "text";
      const char* const c_string = begins_inside ? ZunStringCStr(o.string) + pos : "text";
      Check(ZunStringAssignCStr(s.string, c_string) != nullptr, "a text is assigned");
      s.model = text;
      break;
    }
    default:
      ZunStringClear(s.string);
      s.model.clear();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Allocator a;
  Allocator b;
  std::array<Modelled, 3> strings = {Modelled(a), Modelled(a), Modelled(b)};
  for (int steps = 0; !input.AtEnd() && steps < 64; ++steps) {
    Modelled& s = strings[input.Below(3)];
    Modelled& o = strings[input.Below(3)];
    if (s.model.size() + o.model.size() > 50000) return 0;
    Step(input, s, o);
    for (Modelled& each : strings) {
      Check(each.string->size == each.model.size() && each.string.str() == each.model, "the string is as its model");
      Check(each.string->size <= each.string->capacity, "the capacity holds the string");
      Check(ZunStringCStr(each.string)[each.string->size] == '\0', "a zero follows the last byte");
    }
  }
  return 0;
}
