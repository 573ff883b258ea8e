/// An owned set of the host interface, with iteration.
#ifndef QELVANE_TOOLBOX_SET_H
#define QELVANE_TOOLBOX_SET_H

#include "qelvane/QelUtil.h"

#include <cstddef>
#include <iterator>
#include <new>
#include <utility>

namespace qelvane::toolbox {

/// Owns one QelSet of zones, variables or field maps and frees it. Move-only; a moved-from set
/// holds null and is empty. Members count from 1 and are visited in ascending order.
class Set {
 public:
  /// throws  std::bad_alloc when the host has no set to give
  Set() : m_set(QelUtilSetAlloc(FALSE)) {
    if (m_set == nullptr) throw std::bad_alloc();
  }
  /// A set with one member.
  /// throws  std::bad_alloc when the host refuses the set or the member
  explicit Set(SetIndex_t member) : Set() {
    if (!add(member)) throw std::bad_alloc();
  }
  /// Takes over a set that the host handed out, for example by QelUtilZoneGetRelevant.
  /// throws  std::bad_alloc when it is null
  explicit Set(QelSet* owned) : m_set(owned) {
    if (m_set == nullptr) throw std::bad_alloc();
  }
  ~Set() {
    if (m_set != nullptr) QelUtilSetDealloc(&m_set);
  }
  Set(const Set&) = delete;
  Set& operator=(const Set&) = delete;
  Set(Set&& other) noexcept : m_set(std::exchange(other.m_set, nullptr)) {}
  Set& operator=(Set&& other) noexcept {
    std::swap(m_set, other.m_set);
    return *this;
  }

  /// The handle, still owned by this object.
  QelSet* getRef() const { return m_set; }

  bool add(SetIndex_t member) { return QelUtilSetAddMember(m_set, member, FALSE); }
  bool contains(SetIndex_t member) const { return QelUtilSetIsMember(m_set, member); }
  SetIndex_t size() const { return QelUtilSetGetMemberCount(m_set); }
  bool empty() const { return size() == 0; }

  /// Visits the members in ascending order; the end is the member 0.
  class const_iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = SetIndex_t;
    using difference_type = std::ptrdiff_t;
    using pointer = const SetIndex_t*;
    using reference = SetIndex_t;

    const_iterator(const QelSet* set, SetIndex_t member) : m_set(set), m_member(member) {}
    SetIndex_t operator*() const { return m_member; }
    const_iterator& operator++() {
      m_member = QelUtilSetGetNextMember(m_set, m_member);
      return *this;
    }
    const_iterator operator++(int) {
      const_iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const const_iterator& a, const const_iterator& b) {
      return a.m_member == b.m_member;
    }
    friend bool operator!=(const const_iterator& a, const const_iterator& b) { return !(a == b); }

   private:
    const QelSet* m_set;
    SetIndex_t m_member;
  };

  const_iterator begin() const {
    return const_iterator(m_set, m_set == nullptr ? 0 : QelUtilSetGetNextMember(m_set, 0));
  }
  const_iterator end() const { return const_iterator(m_set, 0); }

 private:
  QelSet* m_set;
};

}  // namespace qelvane::toolbox

#endif
