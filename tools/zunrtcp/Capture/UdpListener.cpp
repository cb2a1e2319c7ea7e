#include "tools/zunrtcp/Capture/UdpListener.h"

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <system_error>

#include "tools/zunrtcp/Capture/Interrupt.h"
#include "tools/zunrtcp/Capture/RtcpFinder.h"
#include "tools/zunrtcp/InputError.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kLargestDatagram = 65535;
constexpr std::int64_t kMicroseconds = 1000000;

struct HostAndPort {
  std::string host;
  std::string port;
};

HostAndPort SplitAddress(const std::string& address) {
  const std::size_t colon = address.rfind(':');
  if (colon == std::string::npos) throw InputError("--listen: no port: " + address);
  HostAndPort split{address.substr(0, colon), address.substr(colon + 1)};
  std::string& host = split.host;
  if (host.size() > 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  return split;
}

using Addresses = std::unique_ptr<addrinfo, void (*)(addrinfo*)>;

Addresses Resolve(const std::string& address) {
  const auto [host, port] = SplitAddress(address);
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_DGRAM;
  wanted.ai_flags = AI_PASSIVE | AI_NUMERICHOST | AI_NUMERICSERV;
  addrinfo* found = nullptr;
  const int error = getaddrinfo(host.empty() ? nullptr : host.c_str(), port.c_str(), &wanted, &found);
  if (error != 0) throw InputError("--listen: no address: " + address + " (" + gai_strerror(error) + ")");
  return {found, freeaddrinfo};
}

Endpoint EndpointOf(const sockaddr_storage& address, socklen_t size) {
  std::array<char, NI_MAXHOST> host{};
  std::array<char, NI_MAXSERV> port{};
  getnameinfo(reinterpret_cast<const sockaddr*>(&address), size, host.data(), host.size(), port.data(), port.size(),
              NI_NUMERICHOST | NI_NUMERICSERV);
  return {host.data(), static_cast<std::uint16_t>(std::strtoul(port.data(), nullptr, 10))};
}

std::int64_t Now() {
  const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(since_1970).count();
}

}  // namespace

UdpListener::UdpListener(const std::string& address) : buffer_(kLargestDatagram, '\0') {
  const Addresses addresses = Resolve(address);
  socket_ = socket(addresses->ai_family, addresses->ai_socktype, addresses->ai_protocol);
  if (socket_ < 0 || bind(socket_, addresses->ai_addr, addresses->ai_addrlen) != 0) {
    const std::string reason = std::generic_category().message(errno);
    if (socket_ >= 0) close(socket_);
    throw InputError("--listen: cannot listen on " + address + ": " + reason);
  }
  sockaddr_storage own{};
  socklen_t size = sizeof own;
  getsockname(socket_, reinterpret_cast<sockaddr*>(&own), &size);
  own_ = EndpointOf(own, size);
  path_ = own_.Name();
}

UdpListener::~UdpListener() { close(socket_); }

std::optional<RtcpDatagram> UdpListener::Next() {
  while (WaitToRead(socket_)) {
    if (std::optional<RtcpDatagram> datagram = Receive()) return datagram;
  }
  return std::nullopt;
}

std::optional<RtcpDatagram> UdpListener::Receive() {
  sockaddr_storage sender{};
  socklen_t size = sizeof sender;
  const ssize_t received =
      recvfrom(socket_, buffer_.data(), buffer_.size(), MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&sender), &size);
  if (received < 0) return std::nullopt;
  const std::int64_t now = Now();
  if (!start_) start_ = now;
  ++counts_.records;
  ++counts_.udp;
  std::string payload = buffer_.substr(0, static_cast<std::size_t>(received));
  if (!LooksLikeRtcp(payload)) {
    if (LooksLikeRtp(payload)) ++counts_.rtp;
    return std::nullopt;
  }
  RtcpDatagram datagram;
  datagram.number = ++found_;
  datagram.record_number = counts_.records;
  datagram.record_offset = -1;
  datagram.seconds = now / kMicroseconds;
  datagram.microseconds = static_cast<std::uint32_t>(now % kMicroseconds);
  datagram.since_start = now - *start_;
  datagram.source = EndpointOf(sender, size);
  datagram.destination = own_;
  datagram.payload = std::move(payload);
  return datagram;
}

}  // namespace zunrtcp
