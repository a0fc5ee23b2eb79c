// The reference host's accounting: what the library holds and has allocated right now.
//
// Every test of a script call compares heldReferences() before and after the call: a
// method must give back every reference it took, on every path. Structural references
// the host keeps itself (a tree holding its elements) are not counted here.
#pragma once

#include <cstddef>
#include <vector>

class xClass;

namespace refhost {

// References taken with Loom::RefCount::addRef and not yet given back with relRef.
long heldReferences();
// Objects allocated with Loom::Base::operator new and not yet freed.
long liveBaseObjects();
// Blocks from Loom::allocate_impl (Loom::Allocator) not yet freed.
long liveAllocations();

// Every xClass destructor call so far, in order (the library's objects at unload).
const std::vector<const xClass*>& destroyedObjects();

// Makes the next Loom::Base::operator new return null (the host out of memory).
void failNextBaseAllocation();

}  // namespace refhost
