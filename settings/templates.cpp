#include "settings/templates.h"

#include <string_view>

#include "core/elements.h"

namespace {

struct TemplateButton {
  std::u16string_view applyId;
  std::u16string_view editId;
  std::u16string_view labelPrefix;
  std::string_view settingKey;
};

// The sheet's numbering: 9-in-1 is the fourth button and 4-in-1 the fifth. Stored
// templates and label ids depend on it, so the order stays exactly as it is.
constexpr TemplateButton kTemplateButtons[] = {
    {u"but_TmpltMono", u"but_TmpltEdtMono", u"tmpl_lbl_but1_", "TEMPLATE_BUTTON_1"},
    {u"but_Tmplt2in1", u"but_TmpltEdt2in1", u"tmpl_lbl_but2_", "TEMPLATE_BUTTON_2"},
    {u"but_TmpltBook", u"but_TmpltEdtBook", u"tmpl_lbl_but3_", "TEMPLATE_BUTTON_3"},
    {u"but_Tmplt9in1", u"but_TmpltEdt9in1", u"tmpl_lbl_but4_", "TEMPLATE_BUTTON_4"},
    {u"but_Tmplt4in1", u"but_TmpltEdt4in1", u"tmpl_lbl_but5_", "TEMPLATE_BUTTON_5"},
    {u"but_TmpltEmp", u"but_TmpltEdtEmp", u"tmpl_lbl_but6_", "TEMPLATE_BUTTON_6"},
};

constexpr char kTemplateBranch[] = "TEMPLATE";

}  // namespace

bool removeTemplate(const Loom::string& profileName, const Loom::string& buttonKey,
                    Loom::Services::PersistentSettings& settings) {
  Loom::Services::PersistentItem& button = settings[kTemplateBranch][buttonKey];
  if (static_cast<Loom::string>(button) != profileName) return false;
  button = Loom::string();
  return true;
}

void updateTemplates(const Loom::string& profileName, Loom::SmartPtr<Loom::XUL::xXULDoc> doc) {
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!window) return;
  for (const TemplateButton& button : kTemplateButtons) {
    removeTemplate(profileName, Loom::string(button.settingKey), window->getSettings());
  }
}

bool getTmplLblPrefix(const Loom::wstring& buttonId, Loom::wstring& prefix) {
  for (const TemplateButton& button : kTemplateButtons) {
    if (buttonId == button.applyId || buttonId == button.editId) {
      prefix = Loom::wstring(button.labelPrefix);
      return true;
    }
  }
  return false;
}
