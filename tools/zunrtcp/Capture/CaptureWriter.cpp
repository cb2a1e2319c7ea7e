#include "tools/zunrtcp/Capture/CaptureWriter.h"

#include <pcap/pcap.h>
#include <tins/exceptions.h>
#include <tins/ip.h>
#include <tins/ipv6.h>
#include <tins/rawpdu.h>
#include <tins/udp.h>

#include <vector>

#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr int kMostBytes = 65575;  // an IPv6 packet of the largest payload
constexpr std::size_t kMostPayload = 65507;

std::vector<std::uint8_t> IpPacket(const RtcpDatagram& datagram) {
  const Tins::UDP udp = Tins::UDP(datagram.destination.port, datagram.source.port) / Tins::RawPDU(datagram.payload);
  try {
    if (datagram.source.address.find(':') == std::string::npos) {
      Tins::IP packet = Tins::IP(datagram.destination.address, datagram.source.address) / udp;
      return packet.serialize();
    }
    Tins::IPv6 packet = Tins::IPv6(datagram.destination.address, datagram.source.address) / udp;
    return packet.serialize();
  } catch (const Tins::exception_base&) {
    throw InputError("no pair of IP addresses: " + datagram.source.Name() + ", " + datagram.destination.Name());
  }
}

}  // namespace

void CaptureWriter::Close::operator()(pcap* capture) const { pcap_close(capture); }
void CaptureWriter::Close::operator()(pcap_dumper* dumper) const { pcap_dump_close(dumper); }

CaptureWriter::CaptureWriter(const std::string& path) : path_(path), capture_(pcap_open_dead(DLT_RAW, kMostBytes)) {
  dumper_.reset(pcap_dump_open(capture_.get(), path.c_str()));
  if (dumper_ != nullptr) return;
  std::string words = pcap_geterr(capture_.get());
  if (words.rfind(path + ": ", 0) == 0) words.erase(0, path.size() + 2);
  throw InputError(path + ": " + words);
}

void CaptureWriter::Write(const RtcpDatagram& datagram) {
  if (datagram.payload.size() > kMostPayload) {
    throw InputError(
        Printed("a datagram of %zu bytes is longer than UDP allows (%zu)", datagram.payload.size(), kMostPayload));
  }
  const std::vector<std::uint8_t> packet = IpPacket(datagram);
  pcap_pkthdr header{};
  header.ts.tv_sec = datagram.seconds;
  header.ts.tv_usec = datagram.microseconds;
  header.caplen = header.len = static_cast<bpf_u_int32>(packet.size());
  pcap_dump(reinterpret_cast<u_char*>(dumper_.get()), &header, packet.data());
}

void CaptureWriter::Finish() {
  if (pcap_dump_flush(dumper_.get()) != 0 || std::ferror(pcap_dump_file(dumper_.get())) != 0) {
    throw InputError(path_ + ": cannot be written");
  }
}

}  // namespace zunrtcp
