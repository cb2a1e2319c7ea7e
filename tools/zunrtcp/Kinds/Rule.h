// The rules by which a datagram is not written back as it came, or not read at all, on purpose.
#ifndef TOOLS_ZUNRTCP_KINDS_RULE_H
#define TOOLS_ZUNRTCP_KINDS_RULE_H

namespace zunrtcp {

enum class Rule {
  // Written differently.
  PaddingBit,
  PaddingOctetsDropped,
  NoWholeWords,
  SdesItemSkipped,
  SdesPadding,
  ByePadding,
  ByeEmptyReason,
  AppSubtype,
  MediaSource,
  EmptyTmmbr,
  TransportCcChunks,
  TransportCcDeltaSign,
  TransportCcDeltaSize,
  TransportCcDeltasMissing,
  TransportCcPadding,
  CcfbEcn,
  CcfbFormat,
  CcfbForeignEcn,
  CcfbLostMetric,
  CcfbPadding,
  ReservedBits,
  RpsiPadding,
  RembMantissa,
  BytesAfterFields,
  ShowWidth,
  ShowPadding,
  ShowParameterOfType0,
  LirLayout,
  // Refused.
  TmmbnLength,
  ByeWithoutSources,
  RembSourceCount,
  NoEntries,
  RpsiPaddingCount,
  PaddingOctets,
};

// The rule in one sentence, without a full stop.
const char* Sentence(Rule rule);

}  // namespace zunrtcp

#endif
