#include "settings/profiles.h"

#include <array>
#include <cstdio>
#include <optional>
#include <string_view>

#include "core/elements.h"
#include "core/text.h"
#include "host/codes.h"
#include "host/file.h"
#include "host/properties.h"
#include "host/script.h"
#include "host/serialiser.h"
#include "settings/branch_nodes.h"
#include "settings/settings_access.h"
#include "settings/templates.h"

using spindle::Count;
using spindle::DocPtr;
using spindle::ElemPtr;
namespace access = spindle::settings_internal;

const spindle::Method<xProfiles> xProfiles::kMethods[] = {
    {{"generateProfilesList", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xProfiles::GenerateProfilesList},
    {{"regenerateProfilesList", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xProfiles::GenerateProfilesList},
    {{"selectProfile", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xProfiles::SelectProfile},
    {{"setProfile", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgString}},
     &xProfiles::SetProfile},
    {{"addProfile", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xProfiles::AddProfile},
    {{"addTempProfile", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xProfiles::AddTempProfile},
    {{"deleteProfile", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xProfiles::DeleteProfile},
    {{"checkProfileName",
      Count::kExactly,
      3,
      {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString}},
     &xProfiles::CheckProfileName},
    {{"areProfilesFull", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xProfiles::AreProfilesFull},
    {{"getProfileFileTemplate",
      Count::kExactly,
      3,
      {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString}},
     &xProfiles::GetProfileFileTemplate},
    {{"getProfileNameTemplate",
      Count::kExactly,
      3,
      {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString}},
     &xProfiles::GetProfileNameTemplate},
    {{"loadSetting", Count::kAtLeast, 4, {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString}},
     &xProfiles::LoadSetting},
};

bool xProfiles::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xProfiles>(*this, kMethods, false, method, argc, args);
}

namespace {

using Loom::Services::PersistentItem;

constexpr std::u16string_view kListFile = u"Zuhprofiles.xml";
constexpr char kProfilesBranch[] = "profiles";
constexpr char kTemporaryKey[] = "Temporary Profile";
constexpr char kTemporaryLabel[] = "$IDS_TEMPORARY_PROFILE;";
constexpr char kNameKey[] = "profile";
constexpr char kLabelKey[] = "label";
constexpr char kBuiltInMarker[] = "prof00";
constexpr std::u16string_view kNameField = u"edit_ComProfileName";
constexpr std::string_view kModelPrefix = "KESTREL ";
constexpr int kSlots = 20;
// The page is stored under one name, so a profile saved on one page applies on another.
constexpr char kPageDocument[] = "Profile";

// The preview pictures that come back with a profile: each the image source ("src") of
// the element of that id when the profile was saved.
constexpr std::array<std::string_view, 17> kPreviewImages = {
    "preview_img_FCBooklet", "preview_img_ISDoc",       "preview_img_ILDoc",
    "preview_img_IS",        "preview_img_IL",          "preview_img_PaperMain",
    "preview_img_TabPaper",  "preview_img_DrawBorders", "preview_img_OVL",
    "preview_img_WTM",       "preview_img_FCMain",      "preview_img_FCSub",
    "preview_img_Folding",   "preview_img_Staple",      "preview_img_HolePunch",
    "preview_img_BC",        "preview_img_HSP"};
constexpr std::u16string_view kImageSource = u"src";

// What a profile never overwrites: the user's identity, codes, passwords, box and
// schedule fields, and the state of the buttons and labels the device decides. Their
// value, disabled and hidden attributes read after an apply exactly as before it.
constexpr std::array<std::u16string_view, 17> kProtectedElements = {
    u"ePTKWJobAuthentication_NickName",
    u"ePTKWJobAuthentication_DepartmentCodeEx",
    u"tbx_DptCode",
    u"ePTKWJobPrintType_Schedule_True_Date",
    u"ePTKWJobPrintType_Schedule_True_ScheduleTime",
    u"ePTKWJobPrintType_Private_True_PrivatePasswordEx",
    u"ePTKWJobPrintType_Destination_Box_BoxName",
    u"ePTKWJobPrintType_Destination_Box_BoxNumber",
    u"ePTKWJobPrintType_Destination_Box_BoxFolder",
    u"ePTKWJobPrintType_Destination_Box_BoxPasswordEx",
    u"ePTKWJobOutputQualityType_Advanced_DestinationProfile",
    u"ePTKWJobSNMPCommunication",
    u"but_othSnmpSet",
    u"but_CusPapSiz",
    u"but_OthImp",
    u"but_OthExp",
    u"txt_BasicTab1200Res"};
constexpr std::array<std::u16string_view, 3> kProtectedAttributes = {u"value", u"disabled",
                                                                     u"hidden"};

// Stored documents of plug-ins, kept in the window's setting serialiser, that travel with
// a profile while their plug-in is enabled.
struct PluginDocument {
  const char* plugin;
  const char* document;
};
constexpr PluginDocument kPaperHandlingDoc = {"Paper Handling", "InsertPageDlgSettings"};
constexpr PluginDocument kEffectDoc = {"Effect", "MultipleOverlayDlg"};
constexpr PluginDocument kImageQualityDoc = {"Image Quality", "ImageQualitySettings"};
constexpr char16_t kMultiOverlayList[] = u"cmb_overlay_multi";

using access::UserDirectory;

Loom::wstring SlotFileName(int slot) {
  char name[16];
  std::snprintf(name, sizeof name, "zuprof%03d.xml", slot);
  return spindle::Widen(name);
}

// The first slot whose file does not exist (or is `replaced`, the file of the profile a
// save replaces), or nothing when all 20 are taken.
std::optional<int> FreeSlot(const Loom::File& userDir, const Loom::wstring& replaced = {}) {
  for (int slot = 0; slot < kSlots; ++slot) {
    const Loom::wstring name = SlotFileName(slot);
    if (name == replaced || !(userDir / name).exists()) return slot;
  }
  return std::nullopt;
}

// The temporary profile's file name: the device's model name without "KESTREL ", plus
// ".xml"; nothing when the device names no model.
std::optional<Loom::wstring> TemporaryFileName(const DocPtr& doc) {
  std::optional<Loom::string> model = spindle::DeviceSetting(doc, "PRODUCTCODE", "ModelName");
  if (!model || model->empty()) return std::nullopt;
  if (std::string_view(*model).starts_with(kModelPrefix)) model->erase(0, kModelPrefix.size());
  return spindle::Widen(*model) + u".xml";
}

// The value of `node`'s child `key`, "" when there is none; never creates a node.
Loom::string ChildValue(PersistentItem& node, const char* key) {
  PersistentItem* child = node.find(key);
  return child ? static_cast<Loom::string>(*child) : Loom::string();
}

PersistentItem* Entry(PersistentItem& list, const Loom::string& key) {
  PersistentItem* profiles = list.find(kProfilesBranch);
  return profiles ? profiles->find(key) : nullptr;
}

// The protected attributes of the protected elements, as they are now.
struct KeptAttribute {
  ElemPtr element;
  Loom::wstring name;
  std::optional<Loom::wstring> value;  // nothing: the attribute was absent
};

Loom::vector<KeptAttribute> KeepProtected(const DocPtr& doc) {
  Loom::vector<KeptAttribute> kept;
  for (std::u16string_view id : kProtectedElements) {
    const ElemPtr element = spindle::FindById(doc, id);
    if (!element) continue;
    for (std::u16string_view attribute : kProtectedAttributes) {
      const Loom::wstring name(attribute);
      std::optional<Loom::wstring> value;
      if (element->hasAttribute(name)) value = element->getAttribute(name);
      kept.push_back({element, name, std::move(value)});
    }
  }
  return kept;
}

void PutBack(const Loom::vector<KeptAttribute>& kept) {
  for (const KeptAttribute& attribute : kept) {
    if (attribute.value) {
      attribute.element->setAttribute(attribute.name, *attribute.value);
    } else if (attribute.element->hasAttribute(attribute.name)) {
      attribute.element->removeAttribute(attribute.name);
    }
  }
}

// Copies the stored document `name` from one serialiser to another, when there is one.
void CopyDocument(const Loom::Services::XULDocSerialiser& from,
                  Loom::Services::XULDocSerialiser& to, const char* name) {
  if (const Loom::SmartPtr<Loom::Dom::Node> stored = from.getDoc(name)) to.addDoc(name, stored);
}

void AddPluginDocuments(const DocPtr& doc, Loom::XUL::xWindow& window,
                        Loom::Services::XULDocSerialiser& profile) {
  if (window.pluginEnabled(kPaperHandlingDoc.plugin)) {
    CopyDocument(window.getSettingSerialiser(), profile, kPaperHandlingDoc.document);
  }
  if (window.pluginEnabled(kImageQualityDoc.plugin)) {
    if (PersistentItem* quality = access::ImageQualitySettings(doc)) {
      profile.addDoc(kImageQualityDoc.document, access::BranchToNode(*quality));
    }
  }
  if (window.pluginEnabled(kEffectDoc.plugin)) {
    CopyDocument(window.getSettingSerialiser(), profile, kEffectDoc.document);
  }
}

void LoadPluginDocuments(const DocPtr& doc, Loom::XUL::xWindow& window,
                         const Loom::Services::XULDocSerialiser& profile) {
  if (window.pluginEnabled(kPaperHandlingDoc.plugin)) {
    CopyDocument(profile, window.getSettingSerialiser(), kPaperHandlingDoc.document);
  }
  if (window.pluginEnabled(kImageQualityDoc.plugin)) {
    PersistentItem* quality = access::ImageQualitySettings(doc);
    const Loom::SmartPtr<Loom::Dom::Node> stored = profile.getDoc(kImageQualityDoc.document);
    // The stored document wraps the branch's node.
    Loom::Dom::Node* branch = stored ? stored->children()[0] : nullptr;
    if (quality != nullptr && branch != nullptr) access::NodeToBranch(*branch, *quality);
  }
  if (window.pluginEnabled(kEffectDoc.plugin)) {
    CopyDocument(profile, window.getSettingSerialiser(), kEffectDoc.document);
    // The overlay dialog opens by itself on the next focus when the applied profile
    // chose a multiple overlay set (a selected entry with a value).
    const ElemPtr multi = spindle::FindById(doc, kMultiOverlayList);
    const bool chosen = multi && !multi->getValfromMenulist().empty();
    if (const Loom::SmartPtr<Loom::JS::Environment> env = doc->getScriptEnv()) {
      env->doString(
          Loom::string("vars.autoOpenMultiOverlayDlg = ") + (chosen ? "true" : "false") + ";",
          "<onfocus>", nullptr);
    }
  }
}

Loom::SmartPtr<Loom::Services::DocValidator> PlainValidator() {
  return Loom::SmartPtr<Loom::Services::DocValidator>(new Loom::Services::BasicDocValidator());
}

}  // namespace

Loom::Services::PersistentSettings* xProfiles::List(const DocPtr& doc) {
  if (listOpened_) return &list_;
  const Loom::wstring userDir = UserDirectory(doc);
  if (userDir.empty()) return nullptr;
  const Loom::File file = Loom::File(userDir) / Loom::wstring(kListFile);
  // Created on the first save when it is not there yet.
  list_.setBackingStoreIO(Loom::SmartPtr<Loom::Services::BackingStoreIO>(
      new Loom::Services::FileBackingStoreIO(file, 1, 0)));
  if (file.exists() && list_.loadSettings()) {
    // A temporary profile never survives into the list of a later run.
    if (PersistentItem* profiles = list_.find(kProfilesBranch)) profiles->remove(kTemporaryKey);
  }
  listOpened_ = true;
  return &list_;
}

bool xProfiles::GenerateProfilesList(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& list = args.elem(1);
  if (!doc || !list) return true;
  if (PersistentItem* tree = List(doc)) {
    doc->genMenuListFromPersistentItem(list.get(), (*tree)[kProfilesBranch]);
  }
  return true;
}

bool xProfiles::SelectProfile(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& list = args.elem(1);
  if (!doc || !list) return false;
  const Loom::wstring key = list->getValfromMenulist();
  if (key.empty()) return false;
  return ApplyProfile(doc, spindle::Narrow(key));
}

bool xProfiles::SetProfile(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return false;
  return ApplyProfile(doc, Loom::string(args.str(1)));
}

bool xProfiles::ApplyProfile(const DocPtr& doc, const Loom::string& key) {
  PersistentItem* tree = List(doc);
  PersistentItem* entry = tree ? Entry(*tree, key) : nullptr;
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (entry == nullptr || !window) return false;
  const Loom::File file =
      Loom::File(UserDirectory(doc)) / spindle::Widen(static_cast<Loom::string>(*entry));
  if (!file.exists()) return false;
  Loom::Services::XULDocSerialiser profile(Loom::SmartPtr<Loom::Services::BackingStoreIO>(
                                               new Loom::Services::FileBackingStoreIO(file, 0, 1)),
                                           PlainValidator());
  if (!profile.load()) return false;

  const Loom::vector<KeptAttribute> kept = KeepProtected(doc);
  if (auto* page = dynamic_cast<Loom::XUL::xXULDocWindows*>(doc.get())) {
    page->reinitialiseDefaults();
  }
  profile.loadSettings(doc.get(), kPageDocument);
  PutBack(kept);
  LoadPluginDocuments(doc, *window, profile);
  return true;
}

bool xProfiles::AddProfile(spindle::CallArgs& args) { return SaveProfile(args.doc(0), false); }

bool xProfiles::AddTempProfile(spindle::CallArgs& args) { return SaveProfile(args.doc(0), true); }

bool xProfiles::SaveProfile(const DocPtr& doc, bool temporary) {
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  Loom::Services::PersistentSettings* tree = window ? List(doc) : nullptr;
  if (tree == nullptr) return false;
  const Loom::File userDir(UserDirectory(doc));

  Loom::string name = kTemporaryKey;
  Loom::wstring fileName;
  Loom::wstring replacedFile;
  if (temporary) {
    const std::optional<Loom::wstring> model = TemporaryFileName(doc);
    if (!model) return false;
    fileName = *model;
  } else {
    const ElemPtr field = spindle::FindById(doc, kNameField);
    if (!field) return false;
    name = spindle::Narrow(spindle::ValueOf(field));
    if (name.empty()) return false;
    // Saving under a name in use replaces that profile: its file counts as free, and is
    // removed only once the new one is saved, so a failed save loses nothing.
    if (PersistentItem* old = Entry(*tree, name)) {
      replacedFile = spindle::Widen(static_cast<Loom::string>(*old));
    }
    const std::optional<int> slot = FreeSlot(userDir, replacedFile);
    if (!slot) return false;
    fileName = SlotFileName(*slot);
  }

  // A new document every time: nothing of an earlier save of this file carries over.
  Loom::Services::XULDocSerialiser profile(
      Loom::SmartPtr<Loom::Services::BackingStoreIO>(
          new Loom::Services::FileBackingStoreIO(userDir / fileName, 1, 0)),
      PlainValidator());
  profile.writeSettings(doc.get(), kPageDocument);
  AddPluginDocuments(doc, *window, profile);
  if (!profile.save()) return false;
  if (!replacedFile.empty() && replacedFile != fileName) (userDir / replacedFile).remove();

  PersistentItem& entry = (*tree)[kProfilesBranch][name];
  entry = spindle::Narrow(fileName);
  entry[kNameKey] = name;
  entry[kLabelKey] = temporary ? Loom::string(kTemporaryLabel) : name;
  for (std::string_view image : kPreviewImages) {
    if (const ElemPtr element = spindle::FindById(doc, spindle::Widen(image))) {
      entry[Loom::string(image)] =
          spindle::Narrow(element->getAttribute(Loom::wstring(kImageSource)));
    }
  }
  tree->saveSettings();
  return true;
}

bool xProfiles::DeleteProfile(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& list = args.elem(1);
  Loom::Services::PersistentSettings* tree = doc && list ? List(doc) : nullptr;
  if (tree == nullptr) return false;
  const Loom::string key = spindle::Narrow(list->getValfromMenulist());
  PersistentItem* entry = key.empty() ? nullptr : Entry(*tree, key);
  if (entry == nullptr) return false;
  const Loom::File file =
      Loom::File(UserDirectory(doc)) / spindle::Widen(static_cast<Loom::string>(*entry));
  if (file.exists()) file.remove();
  (*tree)[kProfilesBranch].remove(key);
  tree->saveSettings();
  // A template button may name the profile that is gone.
  updateTemplates(key, doc);
  if (const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc)) {
    window->getSettings().saveSettings();
  }
  doc->genMenuListFromPersistentItem(list.get(), (*tree)[kProfilesBranch]);
  return true;
}

bool xProfiles::CheckProfileName(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& elem = args.elem(1);
  if (!doc || !elem) return true;
  spindle::SetValue(elem, spindle::kFalse);
  PersistentItem* tree = List(doc);
  PersistentItem* profiles = tree ? tree->find(kProfilesBranch) : nullptr;
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (profiles == nullptr || !window) return true;
  const Loom::wstring name = spindle::Widen(args.str(2));
  for (std::size_t i = 0; i < profiles->getNumChildren(); ++i) {
    PersistentItem& child = profiles->childAt(i);
    // Built-in profiles are known by their label, as the list shows it.
    const Loom::wstring shown =
        child.key().find(kBuiltInMarker) != Loom::string::npos
            ? window->resolveString(spindle::Widen(ChildValue(child, kLabelKey)))
            : spindle::Widen(ChildValue(child, kNameKey));
    if (shown == name) spindle::SetValue(elem, spindle::kTrue);
  }
  return true;
}

bool xProfiles::AreProfilesFull(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& elem = args.elem(1);
  if (!doc || !elem) return true;
  const bool free = FreeSlot(Loom::File(UserDirectory(doc))).has_value();
  elem->setAttribute(u"increment", Loom::wstring(spindle::BoolText(free)));
  return true;
}

bool xProfiles::GetProfileFileTemplate(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& elem = args.elem(1);
  PersistentItem* tree = doc && elem ? List(doc) : nullptr;
  if (tree == nullptr) return true;
  const Loom::string name = args.str(2);
  std::optional<Loom::wstring> fileName;
  if (name == kTemporaryKey) {
    fileName = TemporaryFileName(doc);
  } else if (PersistentItem* entry = Entry(*tree, name)) {
    fileName = spindle::Widen(static_cast<Loom::string>(*entry));
  }
  spindle::SetValue(
      elem, fileName ? (Loom::File(UserDirectory(doc)) / *fileName).path() : Loom::wstring());
  return true;
}

bool xProfiles::GetProfileNameTemplate(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& elem = args.elem(1);
  PersistentItem* tree = doc && elem ? List(doc) : nullptr;
  if (tree == nullptr) return true;
  PersistentItem* entry = Entry(*tree, args.str(2));
  spindle::SetValue(elem, entry ? spindle::Widen(ChildValue(*entry, kNameKey)) : Loom::wstring());
  return true;
}

bool xProfiles::LoadSetting(spindle::CallArgs& args) {
  PersistentItem* tree = args.doc(0) ? List(args.doc(0)) : nullptr;
  if (tree == nullptr) return access::KeysFrom(args, 3, args.count()).has_value();
  return access::LoadSettingFrom(args, *tree);
}
