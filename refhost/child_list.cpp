#include "refhost/child_list.h"

#include <algorithm>

#include "refhost/element.h"

namespace refhost {

std::size_t ChildList::position(const Element* child) const {
  for (std::size_t low = front_, high = slots_.size() - 1;; ++low, --high) {
    if (slots_[low].get() == child) return low - front_;
    if (slots_[high].get() == child) return high - front_;
  }
}

void ChildList::append(HostRef<Element> child) { slots_.push_back(std::move(child)); }

HostRef<Element> ChildList::take(std::size_t index) {
  const auto at = slots_.begin() + front_ + static_cast<std::ptrdiff_t>(index);
  HostRef<Element> taken = std::move(*at);
  if (index < size() / 2) {
    std::move_backward(slots_.begin() + front_, at, at + 1);
    ++front_;
    if (front_ >= size()) {
      slots_.erase(slots_.begin(), slots_.begin() + front_);
      front_ = 0;
    }
  } else {
    slots_.erase(at);
  }
  return taken;
}

}  // namespace refhost
