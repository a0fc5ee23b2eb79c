// The Win32 layer against the operating system's own implementation (Wine in CI): each
// service is checked against what the system reports through a second, independent call.
// Dialogs and message boxes need a user and are not run here (see the README).
#include <gtest/gtest.h>
#include <shlobj.h>
#include <windows.h>

#include <cwchar>
#include <string>
#include <tuple>

#include "host/os.h"
#include "platform/win32/file_dialog_filter.h"

namespace {

using Loom::wstring;

wstring Host(const wchar_t* text) { return wstring(reinterpret_cast<const char16_t*>(text)); }

bool UserKeyExists(const wchar_t* path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

TEST(UserRegistryTest, DeletesALeafKeyButNotAKeyWithSubkeysOrAMissingOne) {
  const wchar_t* parent = L"Software\\Spindle\\Win32 Test \u00c4";
  const std::wstring leaf = std::wstring(parent) + L"\\Bl\u00e4tter";
  HKEY created = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, leaf.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                            &created, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(created);

  EXPECT_FALSE(Loom::OS::deleteUserRegistryKey(Host(parent)));
  EXPECT_TRUE(UserKeyExists(leaf.c_str()));
  EXPECT_TRUE(Loom::OS::deleteUserRegistryKey(Host(leaf.c_str())));
  EXPECT_FALSE(UserKeyExists(leaf.c_str()));
  EXPECT_TRUE(Loom::OS::deleteUserRegistryKey(Host(parent)));
  EXPECT_FALSE(UserKeyExists(parent));
  EXPECT_FALSE(Loom::OS::deleteUserRegistryKey(Host(parent)));
}

TEST(PrinterRegistryTest, ReadsTheStringsOfAMultiStringValueOnly) {
  const char* printerKey =
      "SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Spindle Test Printer";
  const std::string dataKey = std::string(printerKey) + "\\PrinterDriverData";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, dataKey.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                            &key, nullptr),
            ERROR_SUCCESS);
  const char plugins[] = "Image Quality\0Secure Print\0";  // and the literal's terminator
  RegSetValueExA(key, "Plugins", 0, REG_MULTI_SZ, reinterpret_cast<const BYTE*>(plugins),
                 sizeof plugins);
  RegSetValueExA(key, "Single", 0, REG_SZ, reinterpret_cast<const BYTE*>("one"), 4);
  RegCloseKey(key);

  Loom::vector<wstring> strings{u"stale"};
  EXPECT_TRUE(Loom::OS::readPrinterMultiString(u"Spindle Test Printer", u"PrinterDriverData",
                                               u"Plugins", strings));
  EXPECT_EQ(strings, (Loom::vector<wstring>{u"Image Quality", u"Secure Print"}));
  EXPECT_FALSE(Loom::OS::readPrinterMultiString(u"Spindle Test Printer", u"PrinterDriverData",
                                                u"Single", strings));
  EXPECT_FALSE(Loom::OS::readPrinterMultiString(u"No Such Printer", u"PrinterDriverData",
                                                u"Plugins", strings));
  EXPECT_EQ(strings.size(), 2u);
  RegDeleteTreeA(HKEY_LOCAL_MACHINE, printerKey);
}

TEST(AccountTest, NetworkUserAndProfileDirectoryAreTheLoggedOnUsers) {
  wchar_t user[256];
  DWORD length = 256;
  ASSERT_TRUE(GetUserNameW(user, &length));
  wstring name = u"stale";
  ASSERT_TRUE(Loom::OS::networkUserName(name));
  EXPECT_EQ(name, Host(user));

  wchar_t profile[MAX_PATH];
  ASSERT_GT(GetEnvironmentVariableW(L"USERPROFILE", profile, MAX_PATH), 0u);
  EXPECT_EQ(Loom::OS::userProfileDirectory(), Host(profile));
}

TEST(AdministratorTest, AgreesWithTheShellAndLeavesNoHandleOpen) {
  DWORD handlesBefore = 0;
  DWORD handlesAfter = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handlesBefore);
  const bool administrator = Loom::OS::isUserAdministrator();
  GetProcessHandleCount(GetCurrentProcess(), &handlesAfter);
  EXPECT_EQ(administrator, IsUserAnAdmin() != FALSE);
  EXPECT_EQ(handlesAfter, handlesBefore);
}

class WindowClassTest : public ::testing::Test {
 protected:
  static HWND Create(const wchar_t* className, HWND parent) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = className;
    RegisterClassW(&windowClass);  // fails harmlessly when already registered
    return CreateWindowExW(0, className, L"", parent ? WS_CHILD : WS_OVERLAPPEDWINDOW, 0, 0, 10, 10,
                           parent, nullptr, windowClass.hInstance, nullptr);
  }
};

TEST_F(WindowClassTest, ClimbsToTheTopLevelWindowsClass) {
  const HWND stub = Create(L"StubWindow", nullptr);
  ASSERT_NE(stub, nullptr) << GetLastError();
  const HWND page = Create(L"SpindlePage", stub);
  const HWND control = Create(L"SpindleControl", page);
  ASSERT_NE(control, nullptr) << GetLastError();
  const HWND application = Create(L"SpindleApplicationFrame", nullptr);

  EXPECT_EQ(Loom::OS::topLevelWindowClassName(control), u"StubWindow");
  EXPECT_EQ(Loom::OS::topLevelWindowClassName(page), u"StubWindow");
  EXPECT_EQ(Loom::OS::topLevelWindowClassName(stub), u"StubWindow");
  EXPECT_EQ(Loom::OS::topLevelWindowClassName(application), u"SpindleApplicationFrame");
  EXPECT_EQ(Loom::OS::topLevelWindowClassName(nullptr), u"");
  DestroyWindow(application);
  DestroyWindow(stub);
}

TEST(ClockTest, IsTheLocalTimeOfTheSystem) {
  const auto tie = [](int y, int mo, int d, int h, int mi, int s) {
    return std::make_tuple(y, mo, d, h, mi, s);
  };
  SYSTEMTIME before{};
  SYSTEMTIME after{};
  GetLocalTime(&before);
  const Loom::OS::LocalTime now = Loom::OS::localTime();
  GetLocalTime(&after);
  const auto value = tie(now.year, now.month, now.day, now.hour, now.minute, now.second);
  EXPECT_LE(
      tie(before.wYear, before.wMonth, before.wDay, before.wHour, before.wMinute, before.wSecond),
      value);
  EXPECT_LE(value,
            tie(after.wYear, after.wMonth, after.wDay, after.wHour, after.wMinute, after.wSecond));
}

TEST(FormTest, ANonPrinterHandleHasNoForms) {
  Loom::OS::FormSize size{1, 2};
  EXPECT_FALSE(Loom::OS::getFormSize(nullptr, u"A4", size));
  EXPECT_EQ(size.width, 1);
  EXPECT_FALSE(Loom::OS::setFormSize(nullptr, u"Custom Paper Size 1", size));
}

TEST(FileDialogFilterTest, ScriptSeparatorsBecomeTerminators) {
  const struct {
    std::u16string script;
    std::u16string dialog;  // without the terminator c_str() adds
  } cases[] = {
      {u"HSP (*.hsp);*.hsp;;", std::u16string(u"HSP (*.hsp)\0*.hsp\0", 18)},
      {u"HSP (*.hsp);*.hsp", std::u16string(u"HSP (*.hsp)\0*.hsp\0", 18)},
      {u"A;*.a;B;*.b", std::u16string(u"A\0*.a\0B\0*.b\0", 12)},
      {u"", u""},
      {u";;", u""},
  };
  for (const auto& c : cases) {
    const wstring filter = spindle::win32::DialogFilter(wstring(c.script));
    EXPECT_EQ(std::u16string(filter.begin(), filter.end()), c.dialog);
  }
}

}  // namespace
