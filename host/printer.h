// Printers, their registry data, the host's plug-ins, encryption and the shipment region.
#pragma once

#include "host/loom_base.h"
#include "host/os.h"

namespace Loom {

// Opens the printer whose driver name is given; isOpen() says whether it exists.
class Printer {
 public:
  explicit Printer(const wstring& driverName);
  ~Printer();
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;

  bool isOpen() const;
  // The spooler handle; null when the printer is not open.
  OS::PrinterHandle getHandle() const;
  // The printer's port name ("IP_10.0.0.1:9100", "LPT1:", ...); "" when not open.
  wstring getPortName() const;

 private:
  OS::PrinterHandle handle_;
};

// The registry data of a printer (the driver's own keys).
class PrinterRegistry {
 public:
  explicit PrinterRegistry(const wstring& printerName);
  // Reads the multi-string `value` under `key` into `out`; false when absent.
  bool getMultiString(const wstring& key, const wstring& value, vector<wstring>& out) const;

 private:
  wstring printer_;
};

// A feature module of the driver that the host loads.
class Plugin : public RefCount {
 public:
  virtual string pluginName() const = 0;
  virtual wstring label() const = 0;
  virtual bool enabled() const = 0;
  // The page description languages it works with ("PS", "PCLXL", "XPS").
  virtual vector<string> supportedPDL() const = 0;
  // The names of plug-ins that must not be enabled together with it.
  virtual vector<string> exclusions() const = 0;
};

// The host's string encryption; the library does no cryptography of its own.
string Encrypt(const string& plain);
string Decrypt(const string& cipher);

bool isNorthAmericanShipment();
bool isJapaneseShipment();

}  // namespace Loom
