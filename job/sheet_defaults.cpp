#include "job/sheet_defaults.h"

#include <optional>

#include "core/text.h"
#include "host/dom.h"
#include "host/file.h"
#include "host/properties.h"
#include "host/serialiser.h"
#include "host/settings.h"
#include "settings/profile_validator.h"

namespace spindle::job_internal {
namespace {

constexpr std::u16string_view kXmlExtension = u".xml";
constexpr std::u16string_view kDefaultsSuffix = u"defpr.xml";
constexpr std::u16string_view kStoredDocument = u"XUL_DOC";
constexpr char16_t kId[] = u"id";

// The document's property manager, or the nearest owner's.
Loom::SmartPtr<Loom::PropertyManager> PropertiesOf(DocPtr doc) {
  for (; doc; doc = doc->getOwnerDoc()) {
    if (Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData()) return properties;
  }
  return nullptr;
}

// "<user dir>\<configuration name without its first .xml>defpr.xml"; nothing when the
// configuration name has no ".xml".
std::optional<Loom::File> DefaultsFile(const DocPtr& doc, const Loom::PropertyManager& properties) {
  Loom::wstring name = properties.getString("loom.driver.config.file");
  const std::size_t extension = name.find(kXmlExtension);
  if (extension == Loom::wstring::npos) return std::nullopt;
  name.erase(extension, kXmlExtension.size());
  name.append(kDefaultsSuffix);
  return Loom::File(doc->getUserDir() + u'\\' + name);
}

// The id of the first stored page reached from the root through first children.
std::optional<Loom::wstring> StoredPageId(const Loom::File& file) {
  Loom::Services::DomXmlParser parser;
  if (!parser.parse(file)) return std::nullopt;
  const Loom::SmartPtr<Loom::Dom::Node> root = parser.detachRoot();
  for (Loom::Dom::Node* node = root.get(); node != nullptr; node = node->children()[0]) {
    if (node->getName() == kStoredDocument && node->attributes().contains(kId)) {
      return node->attributes()[kId];
    }
    if (node->children().getNumChildren() == 0) break;
  }
  return std::nullopt;
}

}  // namespace

void ApplyStoredDefaults(const DocPtr& doc, std::string_view tab) {
  const Loom::SmartPtr<Loom::PropertyManager> properties = PropertiesOf(doc);
  if (!properties) return;
  const std::optional<Loom::File> file = DefaultsFile(doc, *properties);
  if (!file || !file->exists()) return;
  const std::optional<Loom::wstring> page = StoredPageId(*file);
  if (!page) return;

  constexpr int kKeepMissing = 0;
  constexpr int kReadOnly = 1;
  Loom::Services::XULDocSerialiser defaults(
      Loom::SmartPtr<Loom::Services::BackingStoreIO>(
          new Loom::Services::FileBackingStoreIO(*file, kKeepMissing, kReadOnly)),
      Loom::SmartPtr<Loom::Services::DocValidator>(new ProfileValidator(false)));
  if (!defaults.load()) return;
  const Loom::string name = Narrow(*page);
  if (tab == kAllTabs) {
    defaults.loadSettings(doc.get(), name);
  } else {
    defaults.loadTabSettings(doc.get(), name, Loom::string(tab));
  }
}

}  // namespace spindle::job_internal
