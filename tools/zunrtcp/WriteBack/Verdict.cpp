#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

const char* OutcomeName(Outcome outcome) {
  switch (outcome) {
    case Outcome::Identical:
      return "identical";
    case Outcome::Explained:
      return "explained";
    case Outcome::Unexplained:
      return "unexplained";
    case Outcome::RefusedByRule:
      return "refused by rule";
    case Outcome::RefusedUnexplained:
      return "refused";
    case Outcome::CutOff:
      return "cut off";
    case Outcome::Read:
      return "read";
    case Outcome::Protected:
      return "SRTCP";
  }
  return "";
}

}  // namespace zunrtcp
