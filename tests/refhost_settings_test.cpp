// The reference host's stored side: settings trees and their marks, backing stores and
// atomic saves, the settings file format, DOM trees, files, properties and the script
// environment's statement recording.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "host/settings.h"
#include "refhost/archive.h"
#include "refhost/backing_store.h"
#include "refhost/dom.h"
#include "refhost/file_io.h"
#include "refhost/properties.h"
#include "refhost/script_env.h"
#include "refhost/text.h"
#include "support/sheet_test.h"

namespace {

namespace fs = std::filesystem;
using Loom::SmartPtr;
using Loom::Services::FileBackingStoreIO;
using Loom::Services::PersistentItem;
using Loom::Services::PersistentSettings;
using testing_support::Dump;

std::string ReadText(const fs::path& path) {
  return refhost::ReadWholeFile(path).value_or("<none>");
}

void WriteText(const fs::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

class RefhostSettingsTest : public testing_support::HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    fs::remove_all(dir_);
    fs::create_directories(dir_);
  }
  void TearDown() override {
    fs::remove_all(dir_);
    HostTest::TearDown();
  }

  Loom::File HostFile(const std::string& name) const {
    return Loom::File(refhost::Utf16((dir_ / name).string()));
  }
  SmartPtr<FileBackingStoreIO> FileStore(const std::string& name, int createMissing,
                                         int readOnly) const {
    return SmartPtr<FileBackingStoreIO>(
        new FileBackingStoreIO(HostFile(name), createMissing, readOnly));
  }
  std::vector<std::string> DirEntries() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir_))
      names.push_back(entry.path().filename().string());
    return names;
  }

  // A: 1 {A1: x, A2: y}, B: 2, C: (empty) {C1: z}
  static void Fill(PersistentItem& root) {
    root["A"] = "1";
    root["A"]["A1"] = "x";
    root["A"]["A2"] = "y";
    root["B"] = "2";
    root["C"]["C1"] = "z";
  }
  static constexpr char kFilled[] = "={A=1{A1=x,A2=y},B=2,C={C1=z}}";

  const fs::path dir_ =
      fs::temp_directory_path() / ("refhost_settings_" + std::to_string(getpid()));
};

TEST_F(RefhostSettingsTest, MarkKeepAndRevertWorkByPath) {
  PersistentSettings tree;
  Fill(tree);
  tree.mark();
  // Values (the root's too) changed, nodes added, a branch removed and put back last.
  tree = "rootval";
  tree["B"] = "changed";
  tree["C"]["C2"] = "new";
  tree["D"];
  tree.remove("A");
  tree["A"] = "1";
  tree.revert();
  EXPECT_EQ(Dump(tree), kFilled);
  tree["B"] = "after";
  tree.revert();
  EXPECT_EQ(Loom::string(tree["B"]), "after") << "the revert dropped the mark";

  // Only the marked branches go back; a mark belongs to the path, not to the node removed.
  tree["A"].mark();
  tree["C"].mark();
  tree["A"].remove("A1");
  tree["A"] = "9";
  tree.remove("C");
  tree["C"] = "other";
  tree["A"].revert();
  tree["C"].revert();
  EXPECT_EQ(Dump(tree), "={A=1{A1=x,A2=y},B=after,C={C1=z}}");

  tree.mark();
  tree["B"] = "3";
  tree.keep();
  tree.revert();
  EXPECT_EQ(Loom::string(tree["B"]), "3") << "kept";
  tree.mark();
  tree["B"] = "4";
  tree.mark();
  tree["B"] = "5";
  tree.revert();
  EXPECT_EQ(Loom::string(tree["B"]), "4") << "a second mark replaces the first";

  // What a factory reset does: mark the user's branch, load the factory file, revert it.
  SmartPtr<refhost::MemoryBackingStore> factory(new refhost::MemoryBackingStore());
  ASSERT_TRUE(factory->setXml(
      R"(<settings><item key="B" value="factory"/><item key="A" value="f"/></settings>)"));
  tree["A"].mark();
  tree.setBackingStoreIO(factory);
  ASSERT_TRUE(tree.loadSettings());
  EXPECT_EQ(Dump(tree), "={B=factory,A=f}");
  tree["A"].revert();
  EXPECT_EQ(Dump(tree), "={B=factory,A=1{A1=x,A2=y}}");
}

// Marks of nested paths are independent: each revert goes back to its own mark, also when
// the other mark's revert, a reload or the removal of the marked node came in between.
TEST_F(RefhostSettingsTest, NestedMarksEachGoBackToTheirOwnState) {
  PersistentSettings tree;
  Fill(tree);
  tree.mark();
  tree["A"].mark();
  tree["A"]["A1"] = "changed";
  tree["A"].remove("A2");
  tree["A"]["A3"] = "new";
  tree["A"].revert();
  EXPECT_EQ(Dump(tree), kFilled) << "the branch back in order";
  tree["A"].mark();
  tree["A"].remove("A1");
  tree["B"] = "b2";
  SmartPtr<refhost::MemoryBackingStore> factory(new refhost::MemoryBackingStore());
  ASSERT_TRUE(factory->setXml(R"(<settings><item key="A" value="f"/></settings>)"));
  tree.setBackingStoreIO(factory);
  ASSERT_TRUE(tree.loadSettings());
  tree["A"].revert();
  EXPECT_EQ(Dump(tree), "={A=1{A1=x,A2=y}}") << "the branch as marked, after a reload";
  tree.revert();
  EXPECT_EQ(Dump(tree), kFilled) << "the whole tree as marked first";

  // A marked node removed with its parent: its mark remembers the state at the mark.
  tree["C"]["C1"].mark();
  tree["C"]["C1"]["deep"] = "1";
  tree["C"]["C1"] = "changed";
  tree.remove("C");
  tree["C"]["C1"] = "again";
  tree["C"]["C1"].revert();
  EXPECT_EQ(Dump(tree), "={A=1{A1=x,A2=y},B=2,C={C1=z}}");
  tree.mark();
  tree.remove("A");
  tree.keep();  // the removed branch is let go
  EXPECT_EQ(Dump(tree), "={B=2,C={C1=z}}");
}

// A revert from a snapshot exchanges a node's whole content, and a journal covering the
// node records that as one entry. When that journal becomes a snapshot in turn, it undoes
// the exchange on its copy: here A1 (back in the tree by the root's revert) gets its
// snapshot, which holds copies of nodes the journal knows only by their originals.
TEST_F(RefhostSettingsTest, AnExchangeInAJournalIsUndoneInItsSnapshot) {
  PersistentSettings tree;
  Fill(tree);
  tree.mark();
  tree["A"].mark();
  tree["A"]["A1"]["c"] = "1";
  tree["A"]["A1"].mark();
  tree["A"].remove("A1");
  tree.revert();
  tree["A"]["A1"].revert();
  EXPECT_EQ(Dump(tree), "={A=1{A1=x{c=1},A2=y},B=2,C={C1=z}}");
  tree.remove("A");
  tree["A"] = "other";
  tree["A"].revert();
  EXPECT_EQ(Dump(tree), "={B=2,C={C1=z},A=1{A1=x,A2=y}}");
}

TEST_F(RefhostSettingsTest, IndexCreatesLastFindAndRemoveDoNot) {
  PersistentSettings tree;
  Fill(tree);
  EXPECT_EQ(tree.find("missing"), nullptr);
  EXPECT_FALSE(tree.remove("missing"));
  EXPECT_EQ(tree.getNumChildren(), 3u);
  EXPECT_EQ(Loom::string(tree["new"]["deep"]), "");
  EXPECT_EQ(tree.childAt(3).key(), "new");
  EXPECT_EQ(tree.find("A"), &tree["A"]);
  EXPECT_TRUE(tree.remove("A"));
  EXPECT_EQ(Dump(tree), "={B=2,C={C1=z},new={deep=}}");
  EXPECT_THROW(tree.childAt(3), std::out_of_range);
}

// Keys taken out of the middle of probe runs, and added again, stay findable: the index
// moves the rest of a run back into the gap a removal leaves.
TEST_F(RefhostSettingsTest, IndexFindsEveryKeyThroughRemovalsAndAdditions) {
  constexpr int kKeys = 3000;
  const auto key = [](int i) { return Loom::string(std::to_string(i).c_str()); };
  PersistentSettings tree;
  for (int i = 0; i < kKeys; ++i) tree[key(i)] = key(i);
  const auto removed = [](int i, int round) { return (i * 7 + round) % 3 == 0; };
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    for (int i = 0; i < kKeys; ++i) {
      if (removed(i, round)) {
        EXPECT_TRUE(tree.remove(key(i)));
      }
    }
    std::size_t present = 0;
    for (int i = 0; i < kKeys; ++i) {
      PersistentItem* found = tree.find(key(i));
      ASSERT_EQ(found != nullptr, !removed(i, round)) << i;
      if (found != nullptr) {
        EXPECT_EQ(Loom::string(*found), key(i));
      }
      present += found != nullptr;
    }
    EXPECT_EQ(tree.getNumChildren(), present);
    for (int i = 0; i < kKeys; ++i) {
      if (removed(i, round)) tree[key(i)] = key(i);
    }
  }
  EXPECT_EQ(tree.getNumChildren(), static_cast<std::size_t>(kKeys));
}

TEST_F(RefhostSettingsTest, SettingsFileFormatAndRoundTrip) {
  PersistentSettings tree;
  tree["TEMPLATE"]["TEMPLATE_BUTTON_1"] = "Draft";
  tree["TEMPLATE"]["TEMPLATE_BUTTON_2"];
  tree.setBackingStoreIO(FileStore("conf.xml", 1, 0));
  ASSERT_TRUE(tree.saveSettings());
  EXPECT_EQ(ReadText(dir_ / "conf.xml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<settings>\n"
            "  <item key=\"TEMPLATE\">\n"
            "    <item key=\"TEMPLATE_BUTTON_1\" value=\"Draft\" />\n"
            "    <item key=\"TEMPLATE_BUTTON_2\" />\n"
            "  </item>\n"
            "</settings>\n");

  // Any key and value come back as they were, the root's value included.
  tree = "root value";
  tree["Custom Paper Size"]["a/b\\c"] = "q\"uo'te <&>";
  tree["Temporary Profile"]["Grüße 日本"] = "ñ\ttab\nline";
  tree["empty"]["  "] = "";
  tree[""] = "empty key";
  ASSERT_TRUE(tree.saveSettings());
  PersistentSettings loaded;
  loaded.setBackingStoreIO(FileStore("conf.xml", 0, 1));
  ASSERT_TRUE(loaded.loadSettings());
  EXPECT_EQ(Dump(loaded), Dump(tree));
}

// A file is built from the parser's tree, a document in memory from the host's DOM: the
// same text gives the same tree either way, also where a sloppy file gives an attribute
// twice (the later wins) or both the plain and the escaped form (the escaped wins).
TEST_F(RefhostSettingsTest, FileAndDocumentReadersBuildTheSameTree) {
  const std::string xml =
      "<settings value='r' value='root'><item key='a' key='b' value='1' value='2'/>"
      "<item value-bytes='%41' key='c' value='x'/><other key='skipped'/>"
      "<item key-bytes='d%00' key='e'><item key='b' value='merged'/></item></settings>";
  WriteText(dir_ / "f.xml", xml);
  PersistentSettings fromFile;
  fromFile.setBackingStoreIO(FileStore("f.xml", 0, 1));
  ASSERT_TRUE(fromFile.loadSettings());
  SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
  ASSERT_TRUE(store->setXml(xml));
  PersistentSettings fromDocument;
  fromDocument.setBackingStoreIO(store);
  ASSERT_TRUE(fromDocument.loadSettings());
  EXPECT_EQ(Dump(fromFile), std::string("=root{b=2,c=A,d") + '\0' + "={b=merged}}");
  EXPECT_EQ(Dump(fromDocument), Dump(fromFile));
}

TEST_F(RefhostSettingsTest, FileStoreFlags) {
  const struct {
    int createMissing;
    int readOnly;
    bool fileExists;
    bool written;
  } kCases[] = {
      {0, 0, true, true},  {0, 0, false, false}, {1, 0, false, true},
      {0, 1, true, false}, {1, 1, false, false},
  };
  const std::string kOld = "<settings><item key=\"old\"/></settings>";
  const std::string kNew =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<settings>\n  <item key=\"new\" value=\"1\" "
      "/>\n</settings>\n";
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.createMissing << c.readOnly << c.fileExists);
    fs::remove(dir_ / "s.xml");
    if (c.fileExists) WriteText(dir_ / "s.xml", kOld);
    PersistentSettings tree;
    tree["new"] = "1";
    tree.setBackingStoreIO(FileStore("s.xml", c.createMissing, c.readOnly));
    EXPECT_EQ(tree.saveSettings(), c.written);
    EXPECT_EQ(ReadText(dir_ / "s.xml"), c.written ? kNew : c.fileExists ? kOld : "<none>");
    EXPECT_EQ(DirEntries().size(), fs::exists(dir_ / "s.xml") ? 1u : 0u) << "nothing else left";
  }
}

TEST_F(RefhostSettingsTest, FailedSaveLeavesOldFileByteIdentical) {
  const std::string kOld = "<settings>\n<item key=\"keep\" value=\"me\"/></settings>";
  WriteText(dir_ / "s.xml", kOld);
  SmartPtr<refhost::FailingBackingStore> failing(
      new refhost::FailingBackingStore(FileStore("s.xml", 0, 0)));
  PersistentSettings tree;
  tree["new"] = "1";
  tree.setBackingStoreIO(failing);

  failing->failNextWrite();
  EXPECT_FALSE(tree.saveSettings());
  refhost::failNextAtomicCommit();  // the temporary file is written, the rename fails
  EXPECT_FALSE(tree.saveSettings());
  EXPECT_EQ(ReadText(dir_ / "s.xml"), kOld);
  EXPECT_EQ(DirEntries(), std::vector<std::string>{"s.xml"});

  EXPECT_TRUE(tree.saveSettings());
  EXPECT_NE(ReadText(dir_ / "s.xml"), kOld);
  EXPECT_EQ(DirEntries(), std::vector<std::string>{"s.xml"});
}

TEST_F(RefhostSettingsTest, FailedLoadKeepsTree) {
  WriteText(dir_ / "bad.xml", "<settings><item key=\"x\"></settings>");
  WriteText(dir_ / "other.xml", "<profile><item key=\"x\"/></profile>");
  WriteText(dir_ / "good.xml", "<settings><item key=\"x\"/></settings>");
  SmartPtr<refhost::FailingBackingStore> failing(
      new refhost::FailingBackingStore(FileStore("good.xml", 0, 1)));
  failing->failNextRead();
  const std::vector<SmartPtr<Loom::Services::BackingStoreIO>> stores = {
      nullptr, FileStore("missing.xml", 0, 1), FileStore("bad.xml", 0, 1),
      FileStore("other.xml", 0, 1), failing};
  for (std::size_t i = 0; i < stores.size(); ++i) {
    SCOPED_TRACE(i);
    PersistentSettings tree;
    Fill(tree);
    tree.setBackingStoreIO(stores[i]);
    EXPECT_FALSE(tree.loadSettings());
    EXPECT_EQ(Dump(tree), kFilled);
  }
  PersistentSettings tree;
  tree.setBackingStoreIO(failing);  // the failure was used up
  EXPECT_TRUE(tree.loadSettings());
  EXPECT_EQ(Dump(tree), "={x=}");
}

// The stored product code names "KESTREL C750" by model or by driver name.
TEST_F(RefhostSettingsTest, ConfigValidForPrinterOfItsModel) {
  const struct {
    const char* key;      // of the product code's item; nullptr: an empty product code
    const char* printer;  // loom.driver.name; nullptr: not set
    bool valid;
  } kCases[] = {
      {nullptr, nullptr, true},
      {"ModelName", "KESTREL C750", true},
      {"ModelName", "KESTREL C750 PCL6", true},
      {"ModelName", "KESTREL C7500", false},
      {"ModelName", "kestrel c750", false},
      {"ModelName", nullptr, false},
      {"DriverName", "KESTREL C750", true},
      {"DriverName", "KESTREL C750 PS", false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.key ? c.key : "none") + " / " + (c.printer ? c.printer : "unset"));
    const std::string item =
        c.key ? std::string("<item key=\"") + c.key + "\" value=\"KESTREL C750\"/>" : "";
    SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
    ASSERT_TRUE(
        store->setXml("<settings><item key=\"PRODUCTCODE\">" + item + "</item></settings>"));
    SmartPtr<refhost::Properties> properties(new refhost::Properties());
    if (c.printer) properties->set("loom.driver.name", c.printer);
    PersistentSettings tree;
    tree.setBackingStoreIO(store);
    EXPECT_EQ(tree.isXMLConfigValid(*properties), c.valid);
  }
  PersistentSettings without_store;
  EXPECT_FALSE(
      without_store.isXMLConfigValid(*SmartPtr<refhost::Properties>(new refhost::Properties())));
}

// A check after a load judges what the file holds now: the loaded tree stands in for it
// only while neither the tree nor the file has changed since.
TEST_F(RefhostSettingsTest, ConfigCheckAfterLoadJudgesTheFileAsItIsNow) {
  const auto stored = [](const char* model) {
    return std::string("<settings><item key=\"PRODUCTCODE\"><item key=\"ModelName\" value=\"") +
           model + "\"/></item></settings>";
  };
  SmartPtr<refhost::Properties> properties(new refhost::Properties());
  properties->set("loom.driver.name", "KESTREL C750");
  const struct {
    const char* name;
    bool inArchive;         // a member of an archive in memory, else a file
    const char* treeModel;  // set in the tree after the load; nullptr: none
    const char* fileModel;  // written to the file or member after the load; nullptr: none
    bool valid;
  } kCases[] = {
      {"unchanged", false, nullptr, nullptr, true},
      {"tree changed", false, "KESTREL C9", nullptr, true},
      {"file changed", false, nullptr, "KESTREL C9", false},
      {"member unchanged", true, nullptr, nullptr, true},
      {"member changed", true, nullptr, "KESTREL C9", false},
  };
  const Loom::wstring member = u"kstdevSettings.xml";
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    PersistentSettings tree;
    const SmartPtr<refhost::ZipArchive> archive = refhost::ZipArchive::Create(HostFile("a.zip"));
    if (c.inArchive) {
      archive->write(member, stored("KESTREL C750").c_str());
      tree.setBackingStoreIO(SmartPtr<Loom::Services::BackingStoreIO>(
          new Loom::Services::ArchiveBackingStoreIO(archive, member, 1)));
    } else {
      WriteText(dir_ / "f.xml", stored("KESTREL C750"));
      tree.setBackingStoreIO(FileStore("f.xml", 0, 1));
    }
    ASSERT_TRUE(tree.loadSettings());
    if (c.treeModel) tree["PRODUCTCODE"]["ModelName"] = c.treeModel;
    if (c.fileModel && c.inArchive) archive->write(member, stored(c.fileModel).c_str());
    if (c.fileModel && !c.inArchive) WriteText(dir_ / "f.xml", stored(c.fileModel));
    EXPECT_EQ(tree.isXMLConfigValid(*properties), c.valid);
  }
}

TEST_F(RefhostSettingsTest, DomTreesAndXmlErrors) {
  std::string error;
  int line = 0;
  EXPECT_EQ(refhost::ParseXml("<a>\n<b>\n</a>", &error, &line), nullptr);
  EXPECT_EQ(error, "Start-end tags mismatch");
  EXPECT_EQ(line, 3);
  EXPECT_EQ(refhost::ParseXml("<a>\n\xff</a>", &error, &line), nullptr);
  EXPECT_EQ(error, "invalid UTF-8");
  EXPECT_EQ(line, 2);

  SmartPtr<Loom::Dom::Node> root = refhost::ParseXml(R"(<r z="1" a="2"><x/>text<y/></r>)");
  ASSERT_TRUE(root);
  EXPECT_EQ(root->attributes().nameAt(0), u"z");  // document order, not sorted
  EXPECT_EQ(root->attributes().nameAt(2), u"");
  SmartPtr<Loom::Dom::Node> other = Loom::Dom::createNode(u"other");
  SmartPtr<Loom::Dom::Node> x(root->children()[0]);
  other->children().append(x);  // moves: a node has one parent
  EXPECT_EQ(root->children().getNumChildren(), 1u);
  EXPECT_EQ(root->children()[0]->getName(), u"y");
  x->children().append(other);  // would make a cycle: ignored
  EXPECT_EQ(x->children().getNumChildren(), 0u);
  SmartPtr<Loom::Dom::Node> y(root->children()[0]);
  root->children().remove(0);  // y lives on, without a parent
  other->children().append(y);
  EXPECT_EQ(root->children().getNumChildren(), 0u);
  other->children().remove(1);

  SmartPtr<Loom::Dom::Node> copy = other->clone();
  other->children()[0]->attributes().set(u"changed", u"1");
  EXPECT_EQ(refhost::WriteXml(*copy),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<other>\n  <x />\n</other>\n");
  root.reset();  // x and its new parent live on
  EXPECT_EQ(other->children()[0]->getName(), u"x");
}

TEST_F(RefhostSettingsTest, FilesAcceptBothSeparators) {
  EXPECT_EQ((Loom::File(u"dir") / u"a.xml").path(), u"dir/a.xml");
  EXPECT_EQ((Loom::File(u"dir\\") / u"a.xml").path(), u"dir\\a.xml");
  EXPECT_EQ((Loom::File(u"") / u"a.xml").path(), u"a.xml");

  fs::create_directories(dir_ / "sub");
  WriteText(dir_ / "sub" / "a.xml", "bytes");
  const Loom::File source(refhost::Utf16(dir_.string() + "\\sub\\a.xml"));
  EXPECT_TRUE(source.exists());
  EXPECT_TRUE(source.copyTo(HostFile("b.xml")));
  EXPECT_EQ(ReadText(dir_ / "b.xml"), "bytes");
  EXPECT_FALSE(HostFile("sub").remove());  // a directory is no file
  EXPECT_TRUE(source.remove());
  EXPECT_FALSE(source.exists());
  EXPECT_FALSE(source.remove());
  EXPECT_FALSE(source.copyTo(HostFile("c.xml")));
  EXPECT_FALSE(HostFile("c.xml").exists());
}

TEST_F(RefhostSettingsTest, PropertiesGetInt) {
  constexpr std::pair<const char*, int> kCases[] = {
      {"600", 600}, {"-3", -3}, {" 42", 42}, {"+7", 7},         {"600dpi", 600},
      {"abc", 0},   {"", 0},    {"+-1", 0},  {"99999999999", 0}};
  SmartPtr<refhost::Properties> properties(new refhost::Properties());
  for (const auto& [value, expected] : kCases) {
    properties->set("n", value);
    EXPECT_EQ(properties->getInt("n"), expected) << value;
  }
  properties->set("loom.driver.name", "KESTREL Ü");
  EXPECT_EQ(properties->getString("loom.driver.name"), u"KESTREL Ü");
  properties->unset("n");
  EXPECT_FALSE(properties->exists("n"));
  EXPECT_EQ(properties->getInt("n"), 0);
  EXPECT_EQ(properties->keys(), std::vector<std::string>{"loom.driver.name"});
}

TEST_F(RefhostSettingsTest, ScriptStatementsSplitAndRecorded) {
  const std::pair<const char*, std::vector<std::string>> kCases[] = {
      {" call ovlprint.loadOvlName(document);\n rule rul_MultiOverlayEnable; ",
       {"call ovlprint.loadOvlName(document);", "rule rul_MultiOverlayEnable;"}},
      {"call x.f(document, m, ';');", {"call x.f(document, m, ';');"}},
      {R"(a("q\";'"); b)", {R"(a("q\";'");)", "b"}},
      {" ; ;\n\t", {}},
      {"restoreDefaults(document)", {"restoreDefaults(document)"}},
  };
  for (const auto& [text, statements] : kCases) {
    EXPECT_EQ(refhost::SplitStatements(text), statements) << text;
  }

  SmartPtr<refhost::ScriptEnvironment> env(new refhost::ScriptEnvironment());
  EXPECT_TRUE(env->doString("a(); b();", "<src>", nullptr));
  std::vector<std::string> executed;
  env->setExecutor([&executed](const refhost::ScriptEnvironment::Statement& s) {
    executed.push_back(s.text);
    return s.text != "fail;";
  });
  EXPECT_FALSE(env->doString("fail; c;", "other", nullptr));
  EXPECT_EQ(executed, (std::vector<std::string>{"fail;", "c;"}));
  ASSERT_EQ(env->statements().size(), 4u);
  EXPECT_EQ(env->statements()[1].text, "b();");
  EXPECT_EQ(env->statements()[1].source, "<src>");
  EXPECT_EQ(env->statements()[3].source, "other");
  EXPECT_EQ(env->statements()[3].elementId, u"");
  env->clearStatements();
  EXPECT_TRUE(env->statements().empty());

  EXPECT_EQ(env->getObject("imgQuality"), nullptr);
  xClass* const native = reinterpret_cast<xClass*>(0x1234);
  env->defineObject("imgQuality", SmartPtr<Loom::JS::Object>(new refhost::NativeObject(native)));
  EXPECT_EQ(env->getObject("imgQuality")->toPtr(), native);
  env->defineObject("imgQuality", nullptr);
  EXPECT_EQ(env->getObject("imgQuality"), nullptr);
}

}  // namespace
