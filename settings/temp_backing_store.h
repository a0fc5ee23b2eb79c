// TempBackingStoreIO: a backing store in memory, for staging a settings tree without
// touching the printer's files (configuration export and import). It holds exactly the
// last document written; before any write it holds the empty document made with it.
#pragma once

#include "host/dom.h"
#include "host/settings.h"

class TempBackingStoreIO final : public Loom::Services::BackingStoreIO {
 public:
  TempBackingStoreIO();
  ~TempBackingStoreIO() override;

  // A new reference to the held document.
  Loom::SmartPtr<Loom::Dom::Document> read() override;
  // Holds `document` instead of the document held before; false, holding that one
  // still, for a null document.
  bool write(Loom::Dom::Document* document) override;

 private:
  Loom::SmartPtr<Loom::Dom::Document> held_;
};
