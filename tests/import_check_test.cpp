// Which configuration archives an import accepts: names that stay in the user directory,
// sizes that cannot flood it, and a settings member that is a settings tree. Scenarios
// cover the names; the sizes need archives a scenario cannot write.
#include "settings/import_check.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "refhost/accounting.h"
#include "refhost/archive.h"
#include "refhost/text.h"

namespace {

using spindle::settings_internal::ArchiveMayBeImported;

constexpr char kSettings[] = "<settings><item key=\"TEMPLATE\"/></settings>";

struct Case {
  std::u16string member;
  std::string bytes;
  bool reopen;  // saved and opened again, so the sizes are those recorded in the file
  bool accepted;
};

TEST(ImportCheckTest, JudgesEveryMemberBeforeAnythingIsWritten) {
  const long held = refhost::heldReferences();
  const std::filesystem::path file = std::filesystem::path(::testing::TempDir()) /
                                     ("import_check_" + std::to_string(getpid()) + ".cfp");
  const Loom::File path(refhost::Utf16(file.string()));
  const Case cases[] = {
      {u"Zucustpap.xml", "<custom/>", true, true},
      {u"images/logo.png", std::string(4000, 'x'), false, true},
      {u"images/../../evil.xml", "x", false, false},
      {u"..", "x", false, false},
      {u"/etc/evil.xml", "x", false, false},
      {u"C:evil.xml", "x", false, false},
      {u"images\\evil.xml", "x", false, false},
      {u"", "x", false, false},
      {u"big.bin", std::string(64u * 1024 * 1024 + 1, 'x'), false, false},
      {u"bomb.bin", std::string(1024 * 1024, '\0'), true, false},  // about 1000:1
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(refhost::Utf8(c.member));
    Loom::SmartPtr<refhost::ZipArchive> archive = refhost::ZipArchive::Create(path);
    archive->write(u"Zuconf_export.xml", kSettings);
    archive->write(Loom::wstring(c.member), Loom::string(c.bytes));
    Loom::SmartPtr<Loom::Services::Archive> judged = archive;
    if (c.reopen) {
      archive->save();
      judged = Loom::Services::Archive::open(path);
    }
    EXPECT_EQ(ArchiveMayBeImported(judged), c.accepted);
  }
  for (const char* settings : {"<window/>", "not xml"}) {
    Loom::SmartPtr<refhost::ZipArchive> archive = refhost::ZipArchive::Create(path);
    archive->write(u"Zuconf_export.xml", settings);
    EXPECT_FALSE(ArchiveMayBeImported(archive)) << settings;
  }
  EXPECT_FALSE(ArchiveMayBeImported(refhost::ZipArchive::Create(path)));  // no settings
  std::filesystem::remove(file);
  EXPECT_EQ(refhost::heldReferences(), held);
}

}  // namespace
