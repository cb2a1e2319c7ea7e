#include "tools/zunrtcp/Kinds/Rule.h"

#include <cstddef>

namespace zunrtcp {

namespace {

struct Row {
  Rule rule;
  const char* sentence;
};

// In the order of the enumeration.
constexpr Row kRows[] = {
    {Rule::PaddingBit, "the padding bit is never written"},
    {Rule::PaddingOctetsDropped, "padding octets are read as such, and never written"},
    {Rule::NoWholeWords, "data that padding octets leave at no multiple of 4 is read but never written"},
    {Rule::SdesItemSkipped, "SDES items of type 0 or above 15 are skipped"},
    {Rule::SdesPadding, "the padding of an SDES chunk is written as zeros"},
    {Rule::ByePadding, "the padding of a BYE is written as zeros"},
    {Rule::ByeEmptyReason, "an empty BYE reason is not written"},
    {Rule::AppSubtype, "the subtype of an APP is written as 0"},
    {Rule::MediaSource, "the media source of a TMMBR or TSTR is written as 0"},
    {Rule::EmptyTmmbr, "a TMMBR without entries is read but never written"},
    {Rule::TransportCcChunks, "the statuses of a TWCC are laid out in chunks anew"},
    {Rule::TransportCcDeltaSign, "the low byte of a large TWCC delta is read with its sign"},
    {Rule::TransportCcDeltaSize, "a TWCC delta of 0 to 255 is written in one byte"},
    {Rule::TransportCcDeltasMissing, "TWCC deltas that are cut short are not read, and not written"},
    {Rule::TransportCcPadding, "bytes after the TWCC deltas are written as zeros, only up to a multiple of 4"},
    {Rule::CcfbEcn,
     "the ECN of a CCFB metric is read as four times its value, of which nothing is left in its two bits"},
    {Rule::CcfbFormat, "a CCFB of FMT 14, the house's, is written with the registered FMT 11"},
    {Rule::CcfbForeignEcn,
     "the ECN of a CCFB of FMT 14, the house's, is read as four times its value, which is never written"},
    {Rule::CcfbLostMetric, "a CCFB metric of a packet that did not arrive is written as 0"},
    {Rule::CcfbPadding, "the padding of a CCFB stream is written as zeros"},
    {Rule::ReservedBits, "reserved bits are written as 0"},
    {Rule::RpsiPadding, "the padding of an RPSI is counted anew and written as zeros"},
    {Rule::RembMantissa, "the bitrate of a REMB keeps its value and is written with the largest mantissa"},
    {Rule::BytesAfterFields, "bytes after the last field of ABAFB, ALBR and SHOWACK are not kept"},
    {Rule::ShowWidth, "a SHOW parameter is written in as few bytes as its value needs"},
    {Rule::ShowPadding, "a SHOW is padded to a multiple of 4 and no further"},
    {Rule::ShowParameterOfType0, "a SHOW parameter that would begin the padding is read but never written"},
    {Rule::LirLayout, "an LIR is written without the lengths of its layer data, under a header that says 24 bytes"},
    {Rule::TmmbnLength, "a TMMBN (FMT 3 here) is exactly 16 bytes"},
    {Rule::ByeWithoutSources, "a BYE without sources is refused"},
    {Rule::RembSourceCount, "a REMB with 128 or more sources is refused"},
    {Rule::NoEntries, "a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {Rule::RpsiPaddingCount, "an RPSI that counts more padding than it holds is refused"},
    {Rule::PaddingOctets, "padding octets count as body; without them this kind is accepted"},
};

constexpr bool IsInOrder() {
  std::size_t index = 0;
  for (const Row& row : kRows) {
    if (static_cast<std::size_t>(row.rule) != index++) return false;
  }
  return index == static_cast<std::size_t>(Rule::PaddingOctets) + 1;
}
static_assert(IsInOrder());

}  // namespace

const char* Sentence(Rule rule) { return kRows[static_cast<std::size_t>(rule)].sentence; }

}  // namespace zunrtcp
