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
  m_narrow.clear();
  m_wide.clear();
  m_corners = corners;
  Reserve(count, corners);
  for (std::size_t i = 0; i < count * corners; ++i) Append(node);
  m_stamp = NewStamp();
}

void ElementList::Reserve(std::size_t count, std::size_t corners) {
  const std::size_t numbers = NumberCount() + count * corners;
  IsWide() ? m_wide.reserve(numbers) : m_narrow.reserve(numbers);
}

void ElementList::Append(LgIndex_t node) {
  const std::int64_t number = std::int64_t{node} - 1 + m_form.base;
  if (IsWide()) {
    m_wide.push_back(number);
  } else {
    m_narrow.push_back(static_cast<std::int32_t>(number));
  }
}

void ElementList::Keep(NodeForm form) {
  ElementList kept;
  kept.m_form = form;
  kept.m_corners = m_corners;
  kept.Reserve(size(), m_corners);
  for (std::size_t at = 0; at < NumberCount(); ++at) kept.Append(NumberAt(at));
  kept.m_stamp = m_stamp;
  *this = std::move(kept);
}

void* ElementList::First() const {
  const void* const first = IsWide() ? static_cast<const void*>(m_wide.data()) : m_narrow.data();
  return const_cast<void*>(first);
}

void ElementList::push_back(const Row& row) { push_back(row.data(), row.size()); }

void ElementList::push_back(const LgIndex_t* nodes, std::size_t corners) {
  if (NumberCount() == 0) m_corners = corners;
  if (corners == 0 || corners != m_corners || corners > kMostCorners) {
    throw std::invalid_argument("elements of one zone have as many corners as the first");
  }
  for (std::size_t corner = 0; corner < corners; ++corner) Append(nodes[corner]);
  m_stamp = NewStamp();
}

void ElementList::SetNode(std::size_t element, std::size_t corner, LgIndex_t node) {
  const std::size_t at = element * m_corners + corner;
  const std::int64_t number = std::int64_t{node} - 1 + m_form.base;
  if (IsWide()) {
    m_wide[at] = number;
  } else {
    m_narrow[at] = static_cast<std::int32_t>(number);
  }
  m_stamp = NewStamp();
}

ElementList::Row ElementList::operator[](std::size_t element) const {
  const auto nodes = NodesOf(element);
  return {nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(m_corners)};
}

}  // namespace fakehost
