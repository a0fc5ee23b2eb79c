// Backing stores of the reference host beyond the file store of host/settings.h: a store
// in memory, and a fault-injecting wrapper for testing error paths.
//
// FileBackingStoreIO (host/settings.h) is implemented in backing_store.cpp: read() parses
// the file, null when it is missing or not well-formed; write() replaces the file
// atomically (refhost/file_io.h), refuses when the store is read-only, and creates a
// missing file only when the store was made with createMissing. A document without a
// root cannot be written.
#pragma once

#include <string>
#include <string_view>

#include "host/settings.h"
#include "refhost/host_ref.h"

namespace refhost {

// Keeps the last document written, in memory. read() hands out that document itself
// (null before any write), as a store on a file would hand out what it last stored.
class MemoryBackingStore final : public Loom::Services::BackingStoreIO {
 public:
  MemoryBackingStore() = default;

  Loom::SmartPtr<Loom::Dom::Document> read() override { return document_.share(); }
  // Keeps `document`; false for a null one.
  bool write(Loom::Dom::Document* document) override;

  // Parses `xml` and keeps it as if it had been written; false, keeping what was there,
  // when it is not well-formed.
  bool setXml(std::string_view xml);
  // What is held as XML text (refhost::WriteXml); "" when nothing or no root is held.
  std::string xml() const;

 private:
  ~MemoryBackingStore() override = default;

  HostRef<Loom::Dom::Document> document_;
};

// Wraps another store and fails its next read or write on request, as a full disk or an
// unreadable file would; everything else goes through to the wrapped store.
class FailingBackingStore final : public Loom::Services::BackingStoreIO {
 public:
  explicit FailingBackingStore(Loom::SmartPtr<Loom::Services::BackingStoreIO> inner)
      : inner_(inner.get()) {}

  // The next read returns null without reaching the wrapped store.
  void failNextRead() { fail_next_read_ = true; }
  // The next write returns false without reaching the wrapped store.
  void failNextWrite() { fail_next_write_ = true; }

  Loom::SmartPtr<Loom::Dom::Document> read() override;
  bool write(Loom::Dom::Document* document) override;

 private:
  ~FailingBackingStore() override = default;

  HostRef<Loom::Services::BackingStoreIO> inner_;
  bool fail_next_read_ = false;
  bool fail_next_write_ = false;
};

}  // namespace refhost
