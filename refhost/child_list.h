// refhost::ChildList: the ordered children of an element, held with the host's structural
// references.
//
// Pages hold long lists (menu items, radios) from which scripts take single children, most
// often the first or the last. Reading a child by index is O(1); finding a child's place
// searches from both ends at once, and taking a child out moves the shorter side of the
// list, so both cost O(min(position, count - position)): O(1) at either end. To take the
// first child out without moving the rest, the list keeps a gap of empty slots before its
// first child, closed once it is as long as the children.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "refhost/host_ref.h"

namespace refhost {

class Element;

class ChildList {
 public:
  std::size_t size() const { return slots_.size() - front_; }
  bool empty() const { return size() == 0; }
  Element* operator[](std::size_t index) const { return slots_[front_ + index].get(); }
  // The children in order.
  std::span<const HostRef<Element>> items() const {
    return std::span<const HostRef<Element>>(slots_).subspan(front_);
  }

  // The place of `child`, which must be one of the children.
  std::size_t position(const Element* child) const;
  void append(HostRef<Element> child);
  // Takes the child at `index` out; the returned hold keeps it alive.
  HostRef<Element> take(std::size_t index);
  // Takes every child for which `taken(child)` holds out, in one pass; the holds come
  // back in the children's order.
  template <class Taken>
  std::vector<HostRef<Element>> takeAll(const Taken& taken) {
    std::vector<HostRef<Element>> out;
    auto kept = slots_.begin() + front_;
    for (auto it = kept; it != slots_.end(); ++it) {
      if (taken(it->get())) {
        out.push_back(std::move(*it));
      } else {
        *kept++ = std::move(*it);
      }
    }
    slots_.erase(kept, slots_.end());
    return out;
  }

 private:
  std::vector<HostRef<Element>> slots_;
  // Empty slots before the first child.
  std::uint32_t front_ = 0;
};

}  // namespace refhost
