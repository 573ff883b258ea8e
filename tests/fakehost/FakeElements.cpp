#include "FakeElements.h"

#include <stdexcept>

namespace fakehost {

std::uint64_t NewStamp() {
  static std::uint64_t last = 0;
  return ++last;
}

ElementList::ElementList(std::initializer_list<Row> rows) {
  for (const Row& row : rows) push_back(row);
}

void ElementList::Assign(std::size_t count, std::size_t corners, LgIndex_t node) {
  m_corners = corners;
  m_nodes.assign(count * corners, node);
  m_stamp = NewStamp();
}

void ElementList::Reserve(std::size_t count, std::size_t corners) {
  m_nodes.reserve(m_nodes.size() + count * corners);
}

void ElementList::push_back(const Row& row) { push_back(row.data(), row.size()); }

void ElementList::push_back(const LgIndex_t* nodes, std::size_t corners) {
  if (m_nodes.empty()) m_corners = corners;
  if (corners == 0 || corners != m_corners) {
    throw std::invalid_argument("elements of one zone have as many corners as the first");
  }
  m_nodes.insert(m_nodes.end(), nodes, nodes + corners);
  m_stamp = NewStamp();
}

void ElementList::SetNode(std::size_t element, std::size_t corner, LgIndex_t node) {
  m_nodes[element * m_corners + corner] = node;
  m_stamp = NewStamp();
}

ElementList::Row ElementList::operator[](std::size_t element) const {
  return {NodesOf(element), NodesOf(element) + m_corners};
}

}  // namespace fakehost
