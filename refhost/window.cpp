#include "refhost/window.h"

#include <algorithm>

#include "refhost/text.h"

namespace refhost {

// The host's Plugin object for one loaded plug-in; the window changes its state.
class PluginRecord final : public Loom::Plugin {
 public:
  explicit PluginRecord(PluginInfo info) : info_(std::move(info)) {}

  Loom::string pluginName() const override { return Loom::string(info_.name); }
  Loom::wstring label() const override { return Loom::wstring(info_.label); }
  bool enabled() const override { return info_.enabled; }
  Loom::vector<Loom::string> supportedPDL() const override {
    return NarrowList(info_.supportedPdl);
  }
  Loom::vector<Loom::string> exclusions() const override { return NarrowList(info_.exclusions); }

  PluginInfo& info() { return info_; }

 private:
  static Loom::vector<Loom::string> NarrowList(const std::vector<std::string>& names) {
    Loom::vector<Loom::string> out;
    for (const std::string& name : names) out.emplace_back(name);
    return out;
  }

  PluginInfo info_;
};

Window::Window()
    : serialiser_(nullptr, Loom::SmartPtr<Loom::Services::DocValidator>(
                               new Loom::Services::BasicDocValidator())) {}

Window::~Window() = default;

Loom::vector<Loom::SmartPtr<Loom::Plugin>> Window::getPlugins() const {
  Loom::vector<Loom::SmartPtr<Loom::Plugin>> out;
  for (const HostRef<PluginRecord>& plugin : plugins_) out.emplace_back(plugin.get());
  return out;
}

Loom::vector<Loom::string> Window::getPluginNames() const {
  Loom::vector<Loom::string> out;
  for (const HostRef<PluginRecord>& plugin : plugins_) out.push_back(plugin->pluginName());
  return out;
}

Loom::vector<Loom::wstring> Window::getPluginLabels() const {
  Loom::vector<Loom::wstring> out;
  for (const HostRef<PluginRecord>& plugin : plugins_) out.push_back(plugin->label());
  return out;
}

bool Window::pluginEnabled(const Loom::string& name) const {
  const PluginRecord* found = record(name);
  return found != nullptr && found->enabled();
}

void Window::setPluginEnabled(const Loom::string& name, bool enabled) {
  if (PluginRecord* found = record(name)) found->info().enabled = enabled;
}

Loom::vector<Loom::wstring> Window::getInstalledLanguages() const {
  Loom::vector<Loom::wstring> out;
  for (const std::u16string& code : languages_) out.emplace_back(code);
  return out;
}

Loom::wstring Window::resolveString(const Loom::wstring& text) const {
  Loom::wstring out;
  std::size_t done = 0;
  for (std::size_t start = text.find(u'$'); start != Loom::wstring::npos;
       start = text.find(u'$', start + 1)) {
    if (start < done) continue;
    const std::size_t end = text.find(u';', start);
    if (end == Loom::wstring::npos) break;
    auto known = strings_.find(std::u16string_view(text).substr(start, end - start + 1));
    if (known == strings_.end()) continue;
    out.append(text, done, start - done).append(known->second);
    done = end + 1;
  }
  return out.append(text, done);
}

void Window::addPlugin(PluginInfo plugin) {
  if (PluginRecord* found = record(plugin.name)) {
    found->info() = std::move(plugin);
    return;
  }
  HostRef<PluginRecord> created(new PluginRecord(std::move(plugin)));
  if (created) plugins_.push_back(std::move(created));
}

const PluginInfo* Window::plugin(std::string_view name) const {
  PluginRecord* found = record(name);
  return found != nullptr ? &found->info() : nullptr;
}

void Window::setInstalledLanguages(std::vector<std::u16string> languageCodes) {
  languages_ = std::move(languageCodes);
}

void Window::setString(std::u16string reference, std::u16string text) {
  strings_.insert_or_assign(std::move(reference), std::move(text));
}

PluginRecord* Window::record(std::string_view name) const {
  auto it = std::find_if(plugins_.begin(), plugins_.end(),
                         [name](const HostRef<PluginRecord>& p) { return p->info().name == name; });
  return it == plugins_.end() ? nullptr : it->get();
}

}  // namespace refhost

namespace Loom::XUL {

// The window object itself stands for its native window: stable and distinct per sheet.
OS::WindowHandle getXULRootHWND(xXULDoc* doc) {
  if (doc == nullptr) return nullptr;
  return doc->getXWindow().get();
}

}  // namespace Loom::XUL
