// refhost::Window: the xWindow that all documents of one property sheet share.
//
// It owns the user and device settings trees, the setting serialiser that keeps
// sub-documents ("BypassDlg", "InsertPageDlgSettings", ...) in memory, the plug-ins the
// host loaded, the installed UI languages and the string table. Tests and the scenario
// runner set plug-ins, languages and strings through the control functions below.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/printer.h"
#include "host/serialiser.h"
#include "host/settings.h"
#include "host/xul.h"
#include "refhost/host_ref.h"

namespace refhost {

// One plug-in as the host loaded it.
struct PluginInfo {
  std::string name;
  std::u16string label;
  bool enabled = false;
  std::vector<std::string> supportedPdl;  // "PS", "PCLXL", "XPS"
  std::vector<std::string> exclusions;    // names of plug-ins it cannot be combined with
};

class PluginRecord;

class Window final : public Loom::XUL::xWindow {
 public:
  Window();

  Loom::Services::PersistentSettings& getSettings() override { return settings_; }
  Loom::Services::PersistentSettings& getDevSettings() override { return devSettings_; }
  Loom::Services::XULDocSerialiser& getSettingSerialiser() override { return serialiser_; }
  Loom::vector<Loom::SmartPtr<Loom::Plugin>> getPlugins() const override;
  Loom::vector<Loom::string> getPluginNames() const override;
  Loom::vector<Loom::wstring> getPluginLabels() const override;
  // False for a name no plug-in has; enabling an unknown name does nothing.
  bool pluginEnabled(const Loom::string& name) const override;
  void setPluginEnabled(const Loom::string& name, bool enabled) override;
  Loom::vector<Loom::wstring> getInstalledLanguages() const override;
  Loom::wstring resolveString(const Loom::wstring& text) const override;

  // Control: adds a plug-in after the others, or replaces the one of the same name in
  // its place.
  void addPlugin(PluginInfo plugin);
  // The plug-in `name`, or null.
  const PluginInfo* plugin(std::string_view name) const;
  // The installed UI languages in the host's order; {"en"} until set.
  void setInstalledLanguages(std::vector<std::u16string> languageCodes);
  // Makes `reference` ("$IDS_X;", with its '$' and ';') resolve to `text`.
  void setString(std::u16string reference, std::u16string text);

 private:
  ~Window() override;

  PluginRecord* record(std::string_view name) const;

  Loom::Services::PersistentSettings settings_;
  Loom::Services::PersistentSettings devSettings_;
  Loom::Services::XULDocSerialiser serialiser_;
  std::vector<HostRef<PluginRecord>> plugins_;
  std::vector<std::u16string> languages_ = {u"en"};
  std::map<std::u16string, std::u16string, std::less<>> strings_;
};

}  // namespace refhost
