#include "tools/zunrtcp/DecodeCommand.h"

#include <memory>
#include <optional>
#include <utility>

#include "tools/zunrtcp/DecodedDatagram.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Output/Printer.h"
#include "tools/zunrtcp/Text.h"
#include "tools/zunrtcp/Totals.h"

namespace zunrtcp {

namespace {

// What is wrong with a datagram of which the capture holds only the beginning, and where it is.
std::string CutOffWords(const DecodedDatagram& decoded) {
  const RtcpDatagram& datagram = decoded.datagram;
  std::string words = Printed("datagram %zu (", datagram.number);
  words += datagram.line > 0 ? Printed("line %zu", datagram.line) : Printed("record %zu", datagram.record_number);
  if (datagram.line == 0 && datagram.record_offset >= 0) {
    words += Printed(", at byte offset %lld", static_cast<long long>(datagram.record_offset));
  }
  return words + ") is cut off: " + decoded.verdict.remarks.front();
}

std::unique_ptr<Printer> PrinterFor(const DecodeOptions& options, std::ostream* out) {
  if (options.json) return std::make_unique<JsonPrinter>(out, options.dialect);
  return std::make_unique<TextPrinter>(out, options.dialect, options.verbose, Colours(options.in_colour));
}

}  // namespace

ExitStatus RunDecode(const DecodeOptions& options, std::ostream* out) {
  return RunDecode(OpenSource(options.input).get(), options, out);
}

ExitStatus RunDecode(DatagramSource* source, const DecodeOptions& options, std::ostream* out) {
  const std::unique_ptr<Printer> printer = PrinterFor(options, out);
  Totals totals;
  std::string complaint;  // what is wrong with the capture, said when all that can be printed is
  try {
    while (std::optional<RtcpDatagram> found = source->Next()) {
      const DecodedDatagram decoded(std::move(*found), options.dialect, options.verbose);
      if (!options.filter.Passes(decoded)) {
        totals.PassOver();
        continue;
      }
      totals.Add(decoded);
      if (decoded.verdict.outcome == Outcome::CutOff && complaint.empty()) {
        complaint = source->path() + ": " + CutOffWords(decoded);
      }
      if (totals.datagrams() <= options.limit) printer->Print(decoded);
      if (source->live()) out->flush();
    }
  } catch (const InputError& damage) {
    complaint = damage.what();
  }
  const std::size_t all = totals.datagrams() + totals.filtered();
  if (all == 0 && complaint.empty()) complaint = source->NothingFound();
  if (all > 0 || source->live()) printer->Print(totals, source->counts(), source->path());
  if (!complaint.empty()) throw InputError(complaint);
  return totals.Unexplained() ? kUnexplained : kFine;
}

}  // namespace zunrtcp
