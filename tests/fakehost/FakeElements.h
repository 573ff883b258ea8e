#pragma once

#include "qelvane/Types.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

namespace fakehost {

/// A number that no earlier state of any list had: what is derived from a list holds as long as its
/// stamp stays the same.
std::uint64_t NewStamp();

/// How node numbers are kept.
struct NodeForm {
  std::int32_t width = 4;  ///< bytes, 4 or 8
  std::int32_t base = 1;   ///< the number of the first node, 0 or 1
};

/// The nodes of elements of one type as one plain run, so that millions fit; reads like a vector of
/// vectors. Nodes count from 1, whatever form they are kept in; elements and corners here from 0.
class ElementList {
 public:
  using Row = std::vector<LgIndex_t>;
  static constexpr std::size_t kMostCorners = 8;

  class Iterator {
   public:
    Iterator(const ElementList& list, std::size_t at) : m_list(&list), m_at(at) {}
    Row operator*() const { return (*m_list)[m_at]; }
    Iterator& operator++() {
      ++m_at;
      return *this;
    }
    bool operator!=(const Iterator& other) const { return m_at != other.m_at; }

   private:
    const ElementList* m_list;
    std::size_t m_at;
  };

  ElementList() = default;
  ElementList(std::initializer_list<Row> rows);

  /// As many elements of that many corners, all of them at one node.
  void Assign(std::size_t count, std::size_t corners, LgIndex_t node);
  void Reserve(std::size_t count, std::size_t corners);
  /// Every row has as many nodes as the first, at most 8; else throws std::invalid_argument.
  void push_back(const Row& row);
  void push_back(const LgIndex_t* nodes, std::size_t corners);
  void SetNode(std::size_t element, std::size_t corner, LgIndex_t node);

  /// Keeps the nodes in another form from now on.
  void Keep(NodeForm form);
  const NodeForm& Form() const { return m_form; }
  /// The first of all nodes where it lies, in the list's form.
  void* First() const;

  bool empty() const { return size() == 0; }
  std::size_t size() const { return m_corners == 0 ? 0 : NumberCount() / m_corners; }
  std::size_t CornerCount() const { return m_corners; }
  LgIndex_t NodeAt(std::size_t element, std::size_t corner) const {
    return NumberAt(element * m_corners + corner);
  }
  /// The element's nodes; the rest of the array means nothing.
  std::array<LgIndex_t, kMostCorners> NodesOf(std::size_t element) const {
    std::array<LgIndex_t, kMostCorners> nodes{};
    for (std::size_t corner = 0; corner < m_corners; ++corner) {
      nodes[corner] = NodeAt(element, corner);
    }
    return nodes;
  }
  Row operator[](std::size_t element) const;
  Row front() const { return (*this)[0]; }
  Row back() const { return (*this)[size() - 1]; }
  Iterator begin() const { return {*this, 0}; }
  Iterator end() const { return {*this, size()}; }
  std::uint64_t Stamp() const { return m_stamp; }

 private:
  bool IsWide() const { return m_form.width == 8; }
  std::size_t NumberCount() const { return IsWide() ? m_wide.size() : m_narrow.size(); }
  LgIndex_t NumberAt(std::size_t at) const {
    const std::int64_t number = IsWide() ? m_wide[at] : m_narrow[at];
    return static_cast<LgIndex_t>(number - m_form.base + 1);
  }
  void Append(LgIndex_t node);

  NodeForm m_form;
  std::vector<std::int32_t> m_narrow;  ///< the nodes, or none, by their width
  std::vector<std::int64_t> m_wide;
  std::size_t m_corners = 0;
  std::uint64_t m_stamp = 0;
};

/// A vector that takes a new stamp whenever somebody could have changed it.
template <class T>
class StampedVector {
 public:
  StampedVector() = default;
  StampedVector(std::initializer_list<T> items) : m_items(items), m_stamp(NewStamp()) {}

  void push_back(T item) {
    m_items.push_back(std::move(item));
    m_stamp = NewStamp();
  }
  void clear() {
    m_items.clear();
    m_stamp = NewStamp();
  }
  T& operator[](std::size_t index) {
    m_stamp = NewStamp();
    return m_items[index];
  }
  const T& operator[](std::size_t index) const { return m_items[index]; }
  bool empty() const { return m_items.empty(); }
  std::size_t size() const { return m_items.size(); }
  T* begin() {
    m_stamp = NewStamp();
    return m_items.data();
  }
  T* end() { return m_items.data() + m_items.size(); }
  const T* begin() const { return m_items.data(); }
  const T* end() const { return m_items.data() + m_items.size(); }
  std::uint64_t Stamp() const { return m_stamp; }

 private:
  std::vector<T> m_items;
  std::uint64_t m_stamp = 0;
};

}  // namespace fakehost
