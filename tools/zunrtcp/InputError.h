// Bad input: one line that says what is wrong and where.
#ifndef TOOLS_ZUNRTCP_INPUTERROR_H
#define TOOLS_ZUNRTCP_INPUTERROR_H

#include <stdexcept>

namespace zunrtcp {

class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace zunrtcp

#endif
