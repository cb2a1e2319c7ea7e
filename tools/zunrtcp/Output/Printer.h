// Prints datagrams and totals.
#ifndef TOOLS_ZUNRTCP_OUTPUT_PRINTER_H
#define TOOLS_ZUNRTCP_OUTPUT_PRINTER_H

#include <ostream>
#include <string>

#include "tools/zunrtcp/DecodedDatagram.h"
#include "tools/zunrtcp/Output/Colours.h"
#include "tools/zunrtcp/Totals.h"

namespace zunrtcp {

class Printer {
 public:
  virtual ~Printer() = default;
  virtual void Print(const DecodedDatagram& decoded) = 0;
  virtual void Print(const Totals& totals, const FrameCounts& frames, const std::string& path) = 0;
};

// For people.
class TextPrinter : public Printer {
 public:
  // `verbose` shows what the library logged as well.
  TextPrinter(std::ostream* out, Dialect dialect, bool verbose, Colours colours = Colours(false))
      : out_(out), dialect_(dialect), verbose_(verbose), colours_(colours) {}
  void Print(const DecodedDatagram& decoded) override;
  void Print(const Totals& totals, const FrameCounts& frames, const std::string& path) override;

 private:
  void Print(const DecodedSubpacket& subpacket);
  void PrintWriteBacks(const Totals& totals);
  void PrintReadings(const Totals& totals);

  std::ostream* out_;
  Dialect dialect_;
  bool verbose_;
  Colours colours_;
};

// For programs: one JSON object on a line for each datagram, the last one with the totals.
class JsonPrinter : public Printer {
 public:
  JsonPrinter(std::ostream* out, Dialect dialect) : out_(out), dialect_(dialect) {}
  void Print(const DecodedDatagram& decoded) override;
  void Print(const Totals& totals, const FrameCounts& frames, const std::string& path) override;

 private:
  std::ostream* out_;
  Dialect dialect_;
};

}  // namespace zunrtcp

#endif
