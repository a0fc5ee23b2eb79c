// The simulated logon session and the host's encryption (refhost/user_session.h,
// refhost/encryption.h): whether the user is an administrator, the class of the
// top-level window that holds the sheet, and the pairs Loom::Encrypt / Loom::Decrypt
// answer. Each file starts with no administrator, the class "" and an empty table (every
// text encrypts and decrypts to itself).
//
//   administrator yes
//   windowclass "StubWindow32"
//   encryption "secret" = "c2VjcmV0"
#include <string>

#include "refhost/encryption.h"
#include "refhost/user_session.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/host_text.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

Parsed ParseAdministrator(StatementInput& input) {  // administrator yes
  Cursor& cursor = input.cursor();
  const bool yes = cursor.Accept("yes");
  if (!yes && !cursor.Accept("no")) cursor.Fail("yes or no");
  return {std::string("administrator ") + (yes ? "yes" : "no"),
          [yes](Scenario&) { refhost::userSession().setAdministrator(yes); }};
}

Parsed ParseWindowClass(StatementInput& input) {  // windowclass "StubWindow32"
  const std::u16string name = WideQuotedText(input.cursor(), "the quoted window class name");
  return {"windowclass " + Quote(name),
          [name](Scenario&) { refhost::userSession().setWindowClass(name); }};
}

Parsed ParseEncryption(StatementInput& input) {  // encryption "secret" = "c2VjcmV0"
  Cursor& cursor = input.cursor();
  const std::string plain = cursor.Text("the quoted plain text");
  cursor.Expect("=", "'=' and the quoted cipher text");
  const std::string cipher = cursor.Text("the quoted cipher text");
  return {"encryption " + Quote(plain) + " = " + Quote(cipher),
          [plain, cipher](Scenario&) { refhost::encryption().setPair(plain, cipher); }};
}

void StartSession(Scenario&) {
  refhost::userSession().reset();
  refhost::encryption().reset();
}

constexpr StatementForm kForms[] = {
    {"administrator", "administrator yes|no", ParseAdministrator},
    {"windowclass", "windowclass \"NAME\"", ParseWindowClass},
    {"encryption", "encryption \"PLAIN\" = \"CIPHER\"", ParseEncryption},
};

}  // namespace

extern const Facility kSessionFacility{"the logon session and encryption", kForms, StartSession};

}  // namespace loomsim
