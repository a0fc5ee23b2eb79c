#include "refhost/change_observer.h"

namespace refhost {
namespace {

ChangeObserver* g_storeObserver = nullptr;

}  // namespace

void SetStoreObserver(ChangeObserver* observer) { g_storeObserver = observer; }
ChangeObserver* StoreObserver() { return g_storeObserver; }

}  // namespace refhost
