// Reads a new list into an owning vector over the elements of the old one, so that their storage is used again.
#ifndef ZUN_UTILS_LISTREFILL_H
#define ZUN_UTILS_LISTREFILL_H

#include "Zun/Utils/VectorAlgorithms.h"

namespace zun {

// Algorithms is the vector's VectorOfE. However the reading ends, the vector holds exactly the elements that were
// kept once the refill is gone:
//
//   ListRefill<VectorOfX> refill(&p->list);
//   while (more) {
//     X* const x = refill.Next(is_reusable, construct);
//     if (x == nullptr || !Read(r, x)) return false;
//     refill.Keep();
//   }
template <class Algorithms>
class ListRefill {
 public:
  using V = typename Algorithms::Vector;
  using E = typename Algorithms::E;

  explicit ListRefill(V* list) : list_(list), next_(list->begin) {}
  ~ListRefill() { Algorithms::TruncateAt(list_, next_); }
  ListRefill(const ListRefill&) = delete;
  ListRefill& operator=(const ListRefill&) = delete;

  // The next element, alive and holding anything. An old one is handed out when is_reusable(const E&) says that its
  // storage may be kept (that it has the right allocator); otherwise construct(E*), which cannot fail, builds it
  // empty. Null when the vector cannot grow.
  template <class IsReusable, class Construct>
  E* Next(IsReusable is_reusable, Construct construct) {
    if (next_ == list_->end) {
      if (!Algorithms::GrowIfFull(list_)) return nullptr;
      next_ = list_->end;
      construct(next_);
      ++list_->end;
    } else if (!is_reusable(*next_)) {
      Algorithms::DestructElement(next_);
      construct(next_);
    }
    return next_;
  }

  // The element that Next gave last is a part of the new list.
  void Keep() { ++next_; }

 private:
  V* list_;
  E* next_;  // the element that is kept next; the list's end when all are
};

}  // namespace zun

#endif
