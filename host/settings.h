// Settings trees, their backing stores, and archives.
//
// Each XUL window has a user and a device settings tree (xWindow::getSettings /
// getDevSettings); the profiles object keeps one of its own. A tree is made of
// PersistentItem nodes with narrow keys and one narrow value each; the root is itself
// an item. A tree is read from and written to a BackingStoreIO: a file, a member of a
// zip archive, or memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>

#include "host/dom.h"
#include "host/file.h"
#include "host/loom_base.h"

namespace Loom {
class PropertyManager;
}

namespace Loom::Services {

// One node of a settings tree. Nodes are owned by their tree; a reference to one stays
// valid until it or an ancestor is removed or the tree is reloaded.
class PersistentItem {
 public:
  PersistentItem(const PersistentItem&) = delete;
  PersistentItem& operator=(const PersistentItem&) = delete;

  // The child with `key`, created (empty, last in order) when missing.
  virtual PersistentItem& operator[](const string& key) = 0;
  PersistentItem& operator[](const char* key);
  // Sets this node's value.
  virtual PersistentItem& operator=(const string& value) = 0;
  PersistentItem& operator=(const char* value);
  // This node's value; "" when it never had one.
  virtual operator string() const = 0;

  // Removes the child with `key` and its subtree; false when there is none.
  virtual bool remove(const string& key) = 0;
  // The child with `key`, or null; never creates.
  virtual PersistentItem* find(const string& key) = 0;

  virtual const string& key() const = 0;
  virtual std::size_t getNumChildren() const = 0;
  virtual PersistentItem& childAt(std::size_t index) = 0;

  // mark remembers the state of this subtree; revert goes back to it exactly (values,
  // added and removed nodes, order) and drops the mark; keep drops the mark. A second
  // mark replaces the first.
  virtual void mark() = 0;
  virtual void keep() = 0;
  virtual void revert() = 0;

 protected:
  PersistentItem() = default;
  ~PersistentItem() = default;
};

// Reads and writes a whole settings document somewhere.
class BackingStoreIO : public RefCount {
 public:
  // The stored document, or null when there is none yet or it cannot be read.
  virtual SmartPtr<Dom::Document> read() = 0;
  // Stores `document` whole; false when it could not be written.
  virtual bool write(Dom::Document* document) = 0;

 protected:
  BackingStoreIO();
  ~BackingStoreIO() override;
};

// A store on a file. `createMissing` non-zero lets write create the file; `readOnly`
// non-zero refuses writes. Readers of existing files pass (0, 1). Writes are atomic:
// the file is either the old or the new document, never part of one.
class FileBackingStoreIO final : public BackingStoreIO {
 public:
  FileBackingStoreIO(const File& path, int createMissing, int readOnly);
  ~FileBackingStoreIO() override;
  SmartPtr<Dom::Document> read() override;
  bool write(Dom::Document* document) override;
  const File& path() const { return path_; }

 private:
  File path_;
  bool createMissing_;
  bool readOnly_;
};

class Archive;

// A store on one member of a zip archive. Writes change the archive in memory; the
// archive's save() puts them on disk.
class ArchiveBackingStoreIO final : public BackingStoreIO {
 public:
  ArchiveBackingStoreIO(SmartPtr<Archive> archive, const wstring& member, int readOnly);
  ~ArchiveBackingStoreIO() override;
  SmartPtr<Dom::Document> read() override;
  bool write(Dom::Document* document) override;
  Archive* archive() const { return archive_.get(); }
  const wstring& member() const { return member_; }

 private:
  SmartPtr<Archive> archive_;
  wstring member_;
  bool readOnly_;
};

// A settings tree with its backing store.
class PersistentSettings final : public PersistentItem {
 public:
  // An empty tree without a backing store.
  PersistentSettings();
  ~PersistentSettings();

  PersistentItem& operator[](const string& key) override;
  using PersistentItem::operator[];
  PersistentItem& operator=(const string& value) override;
  using PersistentItem::operator=;
  operator string() const override;
  bool remove(const string& key) override;
  PersistentItem* find(const string& key) override;
  const string& key() const override;
  std::size_t getNumChildren() const override;
  PersistentItem& childAt(std::size_t index) override;
  void mark() override;
  void keep() override;
  void revert() override;

  // Replaces the whole content by what the backing store holds. False, with the tree
  // unchanged, when there is no store or it holds nothing readable.
  bool loadSettings();
  // Writes the whole tree to the backing store; false when there is none or it fails.
  bool saveSettings();
  SmartPtr<BackingStoreIO> getBackingStoreIO() const;
  void setBackingStoreIO(SmartPtr<BackingStoreIO> store);
  // Whether the configuration the backing store holds may be loaded for the printer the
  // properties describe (its model and driver must match, when it names them).
  bool isXMLConfigValid(const PropertyManager& properties) const;

 private:
  struct Impl;
  Impl* impl_;
};

// Thrown by archive operations that fail (missing or unreadable file, bad member).
class ArchiveError : public std::exception {
 public:
  explicit ArchiveError(string message);
  const char* what() const noexcept override;

 private:
  string message_;
};

// A zip archive opened from a file; changes stay in memory until save().
class Archive : public RefCount {
 public:
  // Opens the archive at `path`; throws ArchiveError when it is not a readable archive.
  static SmartPtr<Archive> open(const File& path);

  virtual const File& path() const = 0;
  virtual bool exists(const wstring& member) const = 0;
  virtual vector<wstring> members() const = 0;
  // The member's size and its size as stored (compressed), as the archive's directory
  // records them, so a member can be judged before it is read; throws ArchiveError when
  // it is missing.
  struct MemberSize {
    std::uint64_t size;
    std::uint64_t storedSize;
  };
  virtual MemberSize memberSize(const wstring& member) const = 0;
  // The member's bytes; throws ArchiveError when it is missing.
  virtual string read(const wstring& member) const = 0;
  virtual void write(const wstring& member, const string& bytes) = 0;
  // Removes the member; a missing member is no error.
  virtual void remove(const wstring& member) = 0;
  // Writes the archive back to its file; throws ArchiveError on failure.
  virtual void save() = 0;
  // Writes `member` (or, for extractAll, every member) as a file below `directory`,
  // refusing any member name that would land outside it; throws ArchiveError.
  virtual void extract(const wstring& member, const File& directory) const = 0;
  virtual void extractAll(const File& directory) const = 0;
};

}  // namespace Loom::Services
