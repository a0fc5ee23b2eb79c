#include "job/user_name.h"

#include "core/elements.h"
#include "core/text.h"
#include "host/os.h"
#include "host/settings.h"

using spindle::Count;

const spindle::Method<xUserName> xUserName::kMethods[] = {
    {{"extract", Count::kExactly, 1, {Loom::kArgDocument}}, &xUserName::Extract},
};

bool xUserName::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  spindle::Dispatch<xUserName>(*this, kMethods, true, method, argc, args);
  return true;
}

namespace {

constexpr char kNickNameKey[] = "UserNickName";
// What an earlier failed nickname check left behind: never shown as a name.
constexpr char kUnusableNickName[] = "????";

}  // namespace

bool xUserName::Extract(spindle::CallArgs& args) {
  const spindle::DocPtr& doc = args.doc(0);
  const spindle::ElemPtr field = spindle::FindById(doc, u"ePTKWJobAuthentication_NickName");
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!field || !window) return true;
  Loom::Services::PersistentSettings& settings = window->getSettings();
  if (Loom::Services::PersistentItem* stored = settings.find(kNickNameKey)) {
    const Loom::string nickName = *stored;
    if (nickName != kUnusableNickName) {
      spindle::SetValue(field, spindle::Widen(nickName));
      return true;
    }
    settings.remove(kNickNameKey);
  }
  // Without a network user name there is nothing better to show: the field keeps its text.
  Loom::wstring networkName;
  if (Loom::OS::networkUserName(networkName)) spindle::SetValue(field, networkName);
  return true;
}
