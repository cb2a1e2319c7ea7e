// Ends what would go on for ever when the user asks for it.
#ifndef TOOLS_ZUNRTCP_CAPTURE_INTERRUPT_H
#define TOOLS_ZUNRTCP_CAPTURE_INTERRUPT_H

namespace zunrtcp {

// From now on the first SIGINT or SIGTERM is only remembered; the next one has its usual effect.
void CatchInterrupts();

// Waits until the file descriptor can be read. False when there was an interrupt.
bool WaitToRead(int descriptor);

}  // namespace zunrtcp

#endif
