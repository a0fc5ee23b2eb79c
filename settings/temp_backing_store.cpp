#include "settings/temp_backing_store.h"

TempBackingStoreIO::TempBackingStoreIO()
    : held_(Loom::Dom::Document::create(Loom::FileStore::inMemory())) {}

TempBackingStoreIO::~TempBackingStoreIO() = default;

Loom::SmartPtr<Loom::Dom::Document> TempBackingStoreIO::read() { return held_; }

bool TempBackingStoreIO::write(Loom::Dom::Document* document) {
  if (document == nullptr) return false;
  held_ = Loom::SmartPtr<Loom::Dom::Document>(document);
  return true;
}
