// The simulated spooler, and Loom::Printer, Loom::PrinterRegistry and the spooler
// services of host/os.h on it.
#include "refhost/spooler.h"

#include <algorithm>

#include "host/printer.h"

namespace refhost {
namespace {

constexpr std::u16string_view kTcpIpPortPrefix = u"IP_";

bool IsHostNameCharacter(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
         c == u'.' || c == u'-' || c == u'_';
}

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

}  // namespace

bool IsNetworkPortName(std::u16string_view port) {
  if (port.starts_with(kTcpIpPortPrefix)) return true;
  const std::size_t colon = port.rfind(u':');
  if (colon == std::u16string_view::npos) return false;
  const std::u16string_view host = port.substr(0, colon);
  const std::u16string_view number = port.substr(colon + 1);
  if (host.empty() || !std::all_of(host.begin(), host.end(), IsHostNameCharacter)) return false;
  constexpr std::size_t kMaxPortDigits = 5;
  constexpr long kMaxPortNumber = 65535;
  if (number.empty() || number.size() > kMaxPortDigits ||
      !std::all_of(number.begin(), number.end(), IsDigit)) {
    return false;
  }
  long value = 0;
  for (const char16_t digit : number) value = value * 10 + (digit - u'0');
  return value <= kMaxPortNumber;
}

Spooler::PrinterRecord* Spooler::find(std::u16string_view driverName) {
  for (PrinterRecord& printer : printers_) {
    if (printer.driverName == driverName) return &printer;
  }
  return nullptr;
}

const Spooler::PrinterRecord* Spooler::find(std::u16string_view driverName) const {
  return const_cast<Spooler*>(this)->find(driverName);
}

void Spooler::addPrinter(std::u16string driverName) {
  current_ = find(driverName);
  if (current_ == nullptr)
    current_ = &printers_.emplace_back(PrinterRecord{std::move(driverName), {}});
}

bool Spooler::setPortName(std::u16string port) {
  if (current_ == nullptr) return false;
  current_->port = std::move(port);
  return true;
}

std::optional<std::u16string> Spooler::currentPrinter() const {
  if (current_ == nullptr) return std::nullopt;
  return current_->driverName;
}

std::optional<std::u16string> Spooler::portOf(std::u16string_view driverName) const {
  const PrinterRecord* printer = find(driverName);
  if (printer == nullptr) return std::nullopt;
  return printer->port;
}

void Spooler::setForm(std::u16string name, Loom::OS::FormSize size) {
  forms_[std::move(name)] = size;
}

std::optional<Loom::OS::FormSize> Spooler::form(std::u16string_view name) const {
  const auto found = forms_.find(name);
  if (found == forms_.end()) return std::nullopt;
  return found->second;
}

void Spooler::setMultiString(std::u16string printer, std::u16string key, std::u16string value,
                             std::vector<std::u16string> strings) {
  multiStrings_[{std::move(printer), std::move(key), std::move(value)}] = std::move(strings);
}

const std::vector<std::u16string>* Spooler::multiString(std::u16string_view printer,
                                                        std::u16string_view key,
                                                        std::u16string_view value) const {
  const auto found =
      multiStrings_.find({std::u16string(printer), std::u16string(key), std::u16string(value)});
  return found == multiStrings_.end() ? nullptr : &found->second;
}

void Spooler::clearRecords() {
  printersOpened_.clear();
  formsLookedUp_.clear();
}

void Spooler::reset() {
  printers_.clear();
  current_ = nullptr;
  forms_.clear();
  multiStrings_.clear();
  clearRecords();
  openHandles_ = 0;
}

Loom::OS::PrinterHandle Spooler::open(std::u16string_view driverName) {
  printersOpened_.emplace_back(driverName);
  PrinterRecord* printer = find(driverName);
  if (printer == nullptr) return nullptr;
  ++openHandles_;
  return printer;
}

void Spooler::close(Loom::OS::PrinterHandle handle) {
  if (isPrinterHandle(handle)) --openHandles_;
}

bool Spooler::isPrinterHandle(Loom::OS::PrinterHandle handle) const {
  return handle != nullptr &&
         std::any_of(printers_.begin(), printers_.end(),
                     [handle](const PrinterRecord& printer) { return &printer == handle; });
}

std::optional<std::u16string> Spooler::portOfHandle(Loom::OS::PrinterHandle handle) const {
  if (!isPrinterHandle(handle)) return std::nullopt;
  return static_cast<const PrinterRecord*>(handle)->port;
}

std::optional<Loom::OS::FormSize> Spooler::lookUpForm(Loom::OS::PrinterHandle handle,
                                                      std::u16string_view name) {
  formsLookedUp_.emplace_back(name);
  if (!isPrinterHandle(handle)) return std::nullopt;
  return form(name);
}

Spooler& spooler() {
  // Never destroyed: the library may still be unloading after this library's statics die.
  static Spooler* const instance = new Spooler();
  return *instance;
}

}  // namespace refhost

namespace Loom {

Printer::Printer(const wstring& driverName) : handle_(refhost::spooler().open(driverName)) {}

Printer::~Printer() { refhost::spooler().close(handle_); }

bool Printer::isOpen() const { return handle_ != nullptr; }

OS::PrinterHandle Printer::getHandle() const { return handle_; }

wstring Printer::getPortName() const {
  const std::optional<std::u16string> port = refhost::spooler().portOfHandle(handle_);
  return port ? wstring(*port) : wstring();
}

PrinterRegistry::PrinterRegistry(const wstring& printerName) : printer_(printerName) {}

bool PrinterRegistry::getMultiString(const wstring& key, const wstring& value,
                                     vector<wstring>& out) const {
  return OS::readPrinterMultiString(printer_, key, value, out);
}

}  // namespace Loom

namespace Loom::OS {

bool getFormSize(PrinterHandle printer, const wstring& formName, FormSize& size) {
  const std::optional<FormSize> form = refhost::spooler().lookUpForm(printer, formName);
  if (!form) return false;
  size = *form;
  return true;
}

bool setFormSize(PrinterHandle printer, const wstring& formName, const FormSize& size) {
  refhost::Spooler& spooler = refhost::spooler();
  if (!spooler.isPrinterHandle(printer)) return false;
  spooler.setForm(std::u16string(formName), size);
  return true;
}

bool readPrinterMultiString(const wstring& printerName, const wstring& key, const wstring& value,
                            vector<wstring>& out) {
  const std::vector<std::u16string>* strings =
      refhost::spooler().multiString(printerName, key, value);
  if (strings == nullptr) return false;
  out.clear();
  for (const std::u16string& text : *strings) out.emplace_back(text);
  return true;
}

}  // namespace Loom::OS
