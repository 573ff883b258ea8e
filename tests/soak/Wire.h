#pragma once

#include "Copy.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace soak {

/// Numbers, texts and lists of them as bytes, for a process of the same machine.
class Writer {
 public:
  template <class T>
  std::enable_if_t<std::is_trivially_copyable_v<T>> Put(const T& value) {
    m_bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  void Put(const std::string& text);
  void Put(const std::vector<bool>& bits);
  template <class T>
  void Put(const std::vector<T>& items) {
    Put(items.size());
    for (const T& item : items) Put(item);
  }
  void Put(const FaceCopy& face);
  void Put(const ZoneCopy& zone);
  void Put(const FieldCopy& field);
  void Put(const Copy& copy);
  void Put(const Outcome& outcome);

  const std::string& Bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
};

/// Takes out what a writer has put in; throws std::runtime_error past the end.
class Reader {
 public:
  explicit Reader(std::string bytes) : m_bytes(std::move(bytes)) {}

  template <class T>
  std::enable_if_t<std::is_trivially_copyable_v<T>> Get(T& value) {
    Take(&value, sizeof value);
  }
  void Get(std::string& text);
  void Get(std::vector<bool>& bits);
  template <class T>
  void Get(std::vector<T>& items) {
    std::size_t count = 0;
    Get(count);
    items.clear();
    for (; count > 0; --count) Get(items.emplace_back());
  }
  void Get(FaceCopy& face);
  void Get(ZoneCopy& zone);
  void Get(FieldCopy& field);
  void Get(Copy& copy);
  void Get(Outcome& outcome);

 private:
  void Take(void* to, std::size_t size);
  std::string m_bytes;
  std::size_t m_at = 0;
};

/// What is asked of the other host; the rest of a message depends on it.
enum class Request : char {
  Begin,  ///< a copy, the services to offer, the zones that apply; answered by the outcome
  Play,   ///< a line, the zones that apply; answered by the outcome
  End     ///< answered by complaints, a list of texts, and the memory in use
};

/// Messages through a pair of file descriptors; false when there is nobody at the other end.
bool Send(int file, const std::string& bytes);
bool Receive(int file, std::string& bytes);

}  // namespace soak
