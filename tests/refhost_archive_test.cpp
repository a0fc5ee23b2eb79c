// The reference host's zip archives, the settings store on an archive member, and the
// simulated user registry hive and network user name.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "host/os.h"
#include "refhost/accounting.h"
#include "refhost/archive.h"
#include "refhost/text.h"
#include "refhost/user_registry.h"

namespace {

namespace fs = std::filesystem;
using Loom::Services::Archive;
using Loom::Services::ArchiveError;

class RefhostArchiveTest : public ::testing::Test {
 protected:
  void SetUp() override { fs::create_directories(dir_); }
  void TearDown() override {
    fs::remove_all(dir_);
    EXPECT_EQ(refhost::heldReferences(), held_);
  }
  Loom::File HostPath(const std::string& name) const {
    return Loom::File(refhost::Utf16((dir_ / name).string()));
  }

  fs::path dir_ = fs::path(::testing::TempDir()) / ("refhost_archive_" + std::to_string(getpid()));
  long held_ = refhost::heldReferences();
};

TEST_F(RefhostArchiveTest, MembersSurviveSaveAndOpenAndAFailedSaveChangesNothing) {
  const Loom::File path = HostPath("ui.zip");
  EXPECT_THROW(Archive::open(path), ArchiveError);
  refhost::WriteArchiveMember(path, u"b/Zucustpap.xml", "<custom/>");
  refhost::WriteArchiveMember(path, u"A.xml", "first");
  refhost::WriteArchiveMember(path, u"A.xml", "second");
  auto archive = Archive::open(path);
  EXPECT_EQ(archive->members(), (Loom::vector<Loom::wstring>{u"b/Zucustpap.xml", u"A.xml"}));
  EXPECT_EQ(archive->read(u"A.xml"), "second");
  EXPECT_THROW(archive->read(u"a.xml"), ArchiveError);
  archive->remove(u"A.xml");
  archive->remove(u"b/Zucustpap.xml");
  archive->save();  // without members it is still a zip file
  EXPECT_TRUE(Archive::open(path)->members().empty());
  archive->write(u"M.xml", "new");
  refhost::failNextArchiveSave();
  EXPECT_THROW(archive->save(), ArchiveError);
  EXPECT_TRUE(Archive::open(path)->members().empty());

  std::ofstream(dir_ / "not.zip") << "plain text";
  try {
    Archive::open(HostPath("not.zip"));
    ADD_FAILURE() << "no ArchiveError";
  } catch (const ArchiveError& error) {
    EXPECT_NE(std::string(error.what()).find("not.zip"), std::string::npos) << error.what();
  }
}

TEST_F(RefhostArchiveTest, ExtractRefusesNamesThatLeaveTheDirectory) {
  auto archive = refhost::ZipArchive::Create(HostPath("x.zip"));
  archive->write(u"sub\\ok.xml", "ok");
  archive->extractAll(HostPath("out"));
  EXPECT_TRUE(fs::exists(dir_ / "out/sub/ok.xml"));
  for (const char16_t* bad : {u"../evil.xml", u"a/../../evil.xml", u"..\\evil.xml", u"\\evil.xml",
                              u"C:evil.xml", u"dir/"}) {
    archive->write(bad, "x");
    EXPECT_THROW(archive->extract(bad, HostPath("jail")), ArchiveError);
    EXPECT_THROW(archive->extractAll(HostPath("jail")), ArchiveError);
    EXPECT_FALSE(fs::exists(dir_ / "jail")) << "extractAll wrote before refusing";
    archive->remove(bad);
  }
}

TEST_F(RefhostArchiveTest, OpenRefusesEntriesNoHostShouldTake) {
  const std::pair<const char16_t*, std::string> rows[] = {
      {u"", "a member has an empty name"},
      {u"../evil.xml", "member '../evil.xml' would leave the directory it is extracted to"},
      {u"/etc/x", "member '/etc/x' would leave the directory it is extracted to"},
      {u"../", "member '../' would leave the directory it is extracted to"},
      {u"dir/", "directory entry 'dir/' has content"},
  };
  for (const auto& [name, why] : rows) {
    const Loom::File path = HostPath("hostile.zip");
    auto archive = refhost::ZipArchive::Create(path);
    archive->write(name, name == std::u16string_view(u"../") ? "" : "x");
    archive->write(u"ok.xml", "ok");
    archive->save();
    try {
      Archive::open(path);
      ADD_FAILURE() << "no ArchiveError for " << refhost::Utf8(name);
    } catch (const ArchiveError& error) {
      EXPECT_EQ(error.what(), "refusing archive '" + refhost::Utf8(path.path()) + "': " + why);
    }
  }
}

TEST_F(RefhostArchiveTest, ArchiveBackingStoreReadsAndWritesOneMember) {
  using Loom::Services::ArchiveBackingStoreIO;
  auto archive = refhost::ZipArchive::Create(HostPath("ui.zip"));
  archive->write(u"s.xml", R"(<settings><item key="A" value="1"/></settings>)");
  Loom::Services::PersistentSettings tree;
  tree.setBackingStoreIO(Loom::SmartPtr(new ArchiveBackingStoreIO(archive, u"s.xml", 1)));
  ASSERT_TRUE(tree.loadSettings());
  EXPECT_FALSE(tree.saveSettings());  // read-only
  tree.setBackingStoreIO(Loom::SmartPtr(new ArchiveBackingStoreIO(archive, u"t.xml", 0)));
  EXPECT_FALSE(tree.loadSettings());  // no such member yet
  EXPECT_TRUE(tree.saveSettings());
  EXPECT_NE(archive->read(u"t.xml").find(R"(key="A" value="1")"), std::string::npos);
}

TEST(UserSimulationTest, RegistryDeletesAsRegDeleteKey) {
  refhost::resetUserSimulation();
  refhost::setUserRegistryKey(u"Software\\Spindle\\Drv\\Sub", true);
  EXPECT_FALSE(Loom::OS::deleteUserRegistryKey(u"Software\\Spindle\\Drv"));  // has a subkey
  EXPECT_TRUE(Loom::OS::deleteUserRegistryKey(u"SOFTWARE\\Spindle\\Drv\\sub"));
  refhost::failNextUserRegistryDeletion();
  EXPECT_FALSE(Loom::OS::deleteUserRegistryKey(u"Software\\Spindle\\Drv"));
  EXPECT_TRUE(Loom::OS::deleteUserRegistryKey(u"Software\\Spindle\\Drv"));
  EXPECT_FALSE(Loom::OS::deleteUserRegistryKey(u"Software\\Spindle\\Drv"));  // gone now
  EXPECT_EQ(refhost::userRegistryKeys(),
            (std::vector<std::u16string>{u"Software", u"Software\\Spindle"}));
  EXPECT_EQ(refhost::userRegistryDeletions().size(), 5u);

  Loom::wstring name;
  refhost::setNetworkUserName(u"jsmith");
  EXPECT_TRUE(Loom::OS::networkUserName(name));
  EXPECT_EQ(name, u"jsmith");
  refhost::resetUserSimulation();
  EXPECT_FALSE(Loom::OS::networkUserName(name));
}

}  // namespace
