// A UDP socket on the loopback interface, at a port that the system chooses.
#ifndef EXAMPLES_FEEDBACK_RECEIVER_UDPSOCKET_H
#define EXAMPLES_FEEDBACK_RECEIVER_UDPSOCKET_H

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <span>

class UdpSocket {
 public:
  UdpSocket() : fd_(socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK, 0)) {
    const sockaddr_in address = LoopbackAt(0);
    socklen_t size = sizeof(bound_);
    ok_ = fd_ >= 0 && bind(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
          getsockname(fd_, reinterpret_cast<sockaddr*>(&bound_), &size) == 0;
  }
  ~UdpSocket() {
    if (fd_ >= 0) close(fd_);
  }
  UdpSocket(const UdpSocket&) = delete;
  UdpSocket& operator=(const UdpSocket&) = delete;

  explicit operator bool() const { return ok_; }
  int fd() const { return fd_; }
  std::uint16_t port() const { return ntohs(bound_.sin_port); }

  // The next datagram that is there; empty when there is none.
  std::span<const std::byte> Receive(std::span<std::byte> buffer) const {
    const ssize_t size = recv(fd_, buffer.data(), buffer.size(), 0);
    return buffer.first(size > 0 ? static_cast<std::size_t>(size) : 0);
  }
  bool SendTo(std::uint16_t port, std::span<const std::byte> datagram) const {
    const sockaddr_in address = LoopbackAt(port);
    return sendto(fd_, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&address),
                  sizeof(address)) == static_cast<ssize_t>(datagram.size());
  }

 private:
  static sockaddr_in LoopbackAt(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
  }

  int fd_;
  bool ok_ = false;
  sockaddr_in bound_{};
};

#endif
