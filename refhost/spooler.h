// The simulated print spooler behind Loom::Printer, Loom::PrinterRegistry and the
// spooler services of host/os.h: printers by driver name with their port names, the
// server's forms (sizes in thousandths of a millimetre), and the printers' multi-string
// registry values.
//
// Tests and the scenario runner set it up through refhost::spooler(), one control call per
// runner statement:
//   printer "NAME"             spooler().addPrinter(u"NAME")
//   port "NAME"                spooler().setPortName(u"NAME")   (the last printer added)
//   form "NAME" WIDTH HEIGHT   spooler().setForm(u"NAME", {WIDTH, HEIGHT})
// reset() goes back to an empty spooler for a fresh scenario. The printers opened and
// the forms looked up are recorded for inspection.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "host/os.h"

namespace refhost {

// Whether a port prints over the network: a standard TCP/IP port ("IP_10.0.0.1") or a
// host and port number ("10.0.0.1:9100", "printer.example:9100"). "LPT1:", "USB001",
// "FILE:" are local.
bool IsNetworkPortName(std::u16string_view port);

class Spooler {
 public:
  // Adds a printer (without a port) under `driverName`, or finds the one there is, and
  // makes it the current printer.
  void addPrinter(std::u16string driverName);
  // Sets the current printer's port name; false when no printer was added yet.
  bool setPortName(std::u16string port);
  // The driver name of the printer added last; nothing before any.
  std::optional<std::u16string> currentPrinter() const;
  // The port name of the printer `driverName`; nothing when there is no such printer.
  std::optional<std::u16string> portOf(std::u16string_view driverName) const;

  // Creates or replaces the form `name`.
  void setForm(std::u16string name, Loom::OS::FormSize size);
  // The form `name`; nothing when the spooler has none.
  std::optional<Loom::OS::FormSize> form(std::u16string_view name) const;

  // The multi-string `value` under `key` of `printer`'s registry data.
  void setMultiString(std::u16string printer, std::u16string key, std::u16string value,
                      std::vector<std::u16string> strings);
  const std::vector<std::u16string>* multiString(std::u16string_view printer,
                                                 std::u16string_view key,
                                                 std::u16string_view value) const;

  // Every driver name a Loom::Printer was opened with, found or not, in order.
  const std::vector<std::u16string>& printersOpened() const { return printersOpened_; }
  // Every form name getFormSize was asked for, in order.
  const std::vector<std::u16string>& formsLookedUp() const { return formsLookedUp_; }
  // Printer handles opened and not yet closed.
  int openHandles() const { return openHandles_; }
  void clearRecords();

  // No printers, forms or registry values; nothing recorded.
  void reset();

  // The host side, for Loom::Printer and the OS services. A handle is the address of
  // the printer's record; null when the printer does not exist.
  Loom::OS::PrinterHandle open(std::u16string_view driverName);
  void close(Loom::OS::PrinterHandle handle);
  // The port of an open printer; nothing for a handle that is not one.
  std::optional<std::u16string> portOfHandle(Loom::OS::PrinterHandle handle) const;
  // Records the lookup; nothing for a handle that is not an open printer's.
  std::optional<Loom::OS::FormSize> lookUpForm(Loom::OS::PrinterHandle handle,
                                               std::u16string_view name);
  bool isPrinterHandle(Loom::OS::PrinterHandle handle) const;

 private:
  struct PrinterRecord {
    std::u16string driverName;
    std::u16string port;
  };
  PrinterRecord* find(std::u16string_view driverName);
  const PrinterRecord* find(std::u16string_view driverName) const;

  // A deque keeps the records, and so the handles, where they are as printers are added.
  std::deque<PrinterRecord> printers_;
  PrinterRecord* current_ = nullptr;
  std::map<std::u16string, Loom::OS::FormSize, std::less<>> forms_;
  using RegistryKey = std::tuple<std::u16string, std::u16string, std::u16string>;
  std::map<RegistryKey, std::vector<std::u16string>> multiStrings_;
  std::vector<std::u16string> printersOpened_;
  std::vector<std::u16string> formsLookedUp_;
  int openHandles_ = 0;
};

// The one simulated spooler.
Spooler& spooler();

}  // namespace refhost
