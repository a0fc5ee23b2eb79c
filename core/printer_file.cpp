#include "core/printer_file.h"

#include <cstdio>

#include "host/printer.h"
#include "host/properties.h"
#include "host/settings.h"

namespace spindle {
namespace {

constexpr char16_t kFileName[] = u"wlk.xml";
// Characters a port name may hold that a folder name cannot.
constexpr std::u16string_view kEscapedCharacters = u"\\/:*?\"<>";

// The host's flag arguments of a store that only reads an existing file: (0, 1).
constexpr int kNoCreate = 0;
constexpr int kReadOnly = 1;
// The store that writes the file back may create it; the folder must exist.
constexpr int kCreate = 1;
constexpr int kWritable = 0;

Loom::Services::PersistentItem* Find(Loom::Services::PersistentItem& root, std::string_view section,
                                     std::string_view key) {
  Loom::Services::PersistentItem* node = root.find(Loom::string(section));
  return node == nullptr ? nullptr : node->find(Loom::string(key));
}

Loom::SmartPtr<Loom::Services::BackingStoreIO> Store(const Loom::File& path, int createMissing,
                                                     int readOnly) {
  return Loom::SmartPtr<Loom::Services::BackingStoreIO>(
      new Loom::Services::FileBackingStoreIO(path, createMissing, readOnly));
}

}  // namespace

Loom::wstring PrinterFolderName(std::u16string_view portName) {
  Loom::wstring folder;
  for (const char16_t c : portName) {
    if (kEscapedCharacters.find(c) == std::u16string_view::npos) {
      folder += c;
      continue;
    }
    char escape[8];
    std::snprintf(escape, sizeof escape, "%%%X", static_cast<unsigned>(c));
    for (const char* p = escape; *p != '\0'; ++p) folder += static_cast<char16_t>(*p);
  }
  return folder;
}

std::optional<Loom::File> PrinterFolder(const DocPtr& doc) {
  if (!doc) return std::nullopt;
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  if (!properties) return std::nullopt;
  const Loom::wstring driverName = properties->getString("loom.driver.name");
  if (driverName.empty()) return std::nullopt;
  const Loom::Printer printer(driverName);
  return Loom::File(doc->getUserDir()) / PrinterFolderName(printer.getPortName());
}

std::optional<Loom::File> PrinterFilePath(const DocPtr& doc) {
  const std::optional<Loom::File> folder = PrinterFolder(doc);
  if (!folder) return std::nullopt;
  return *folder / kFileName;
}

std::optional<Loom::string> ReadPrinterFile(const DocPtr& doc, std::string_view section,
                                            std::string_view key) {
  const std::optional<Loom::File> path = PrinterFilePath(doc);
  if (!path) return std::nullopt;
  if (!path->exists()) return std::nullopt;
  Loom::Services::PersistentSettings tree;
  tree.setBackingStoreIO(Store(*path, kNoCreate, kReadOnly));
  if (!tree.loadSettings()) return std::nullopt;
  Loom::Services::PersistentItem* node = Find(tree, section, key);
  if (node == nullptr) return std::nullopt;
  return static_cast<Loom::string>(*node);
}

bool WritePrinterFile(const DocPtr& doc, std::string_view section, std::string_view key,
                      std::string_view value) {
  const std::optional<Loom::File> folder = PrinterFolder(doc);
  // The printer's folder is made with the first value stored for it.
  if (!folder || !folder->createDirectory()) return false;
  const Loom::File path = *folder / kFileName;
  Loom::Services::PersistentSettings tree;
  tree.setBackingStoreIO(Store(path, kCreate, kWritable));
  tree.loadSettings();  // a missing file starts empty
  tree[Loom::string(section)][Loom::string(key)] = Loom::string(value);
  return tree.saveSettings();
}

}  // namespace spindle
