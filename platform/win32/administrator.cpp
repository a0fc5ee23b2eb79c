// Whether the current user has administrator rights: first through the process token
// (its full, linked token when it is a limited one), then through the caller's own
// token. Every failing call counts as "not a member".
#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {
namespace {

// Closes a token handle on every path out of the scope that opened it.
class Token {
 public:
  Token() = default;
  ~Token() {
    if (handle_ != nullptr) CloseHandle(handle_);
  }
  Token(const Token&) = delete;
  Token& operator=(const Token&) = delete;
  HANDLE* out() { return &handle_; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_ = nullptr;
};

bool IsVistaOrLater() {
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  // Deprecated for version checks against newer systems; here only "6 or later" matters,
  // which every answer it gives since Vista satisfies.
  const BOOL known = GetVersionExW(&version);
#pragma GCC diagnostic pop
  return known && version.dwMajorVersion >= 6;
}

// The process token, or its linked full token when the process runs limited (split
// token under UAC), tested against the well-known built-in Administrators SID.
bool ProcessTokenIsAdministrator() {
  Token process;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY | TOKEN_DUPLICATE, process.out())) {
    return false;
  }
  Token checked;
  bool limited = false;
  if (IsVistaOrLater()) {
    TOKEN_ELEVATION_TYPE type{};
    DWORD size = 0;
    if (!GetTokenInformation(process.get(), TokenElevationType, &type, sizeof type, &size)) {
      return false;
    }
    limited = type == TokenElevationTypeLimited;
  }
  if (limited) {
    TOKEN_LINKED_TOKEN linked{};
    DWORD size = 0;
    if (!GetTokenInformation(process.get(), TokenLinkedToken, &linked, sizeof linked, &size)) {
      return false;
    }
    *checked.out() = linked.LinkedToken;
  } else if (!DuplicateToken(process.get(), SecurityIdentification, checked.out())) {
    return false;
  }
  BYTE sid[SECURITY_MAX_SID_SIZE];
  DWORD sidSize = sizeof sid;
  if (!CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, sid, &sidSize)) return false;
  BOOL member = FALSE;
  return CheckTokenMembership(checked.get(), sid, &member) && member;
}

// S-1-5-32-544 built by hand, tested against the caller's own token.
bool CallerIsAdministrator() {
  SID_IDENTIFIER_AUTHORITY ntAuthority = SECURITY_NT_AUTHORITY;
  PSID administrators = nullptr;
  if (!AllocateAndInitializeSid(&ntAuthority, 2, SECURITY_BUILTIN_DOMAIN_RID,
                                DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0, 0, 0, &administrators)) {
    return false;
  }
  BOOL member = FALSE;
  const bool checked = CheckTokenMembership(nullptr, administrators, &member);
  FreeSid(administrators);
  return checked && member;
}

}  // namespace

bool isUserAdministrator() { return ProcessTokenIsAdministrator() || CallerIsAdministrator(); }

}  // namespace Loom::OS
