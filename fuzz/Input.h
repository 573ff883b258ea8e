// What a fuzz target makes of its bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

/// Ends the run as a crash when something does not hold that has to, whatever the bytes are.
inline void Demand(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

/// Takes values off the front of the bytes; past their end everything is 0.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

  bool IsAtEnd() const { return m_size == 0; }
  std::size_t Left() const { return m_size; }

  template <class Number>
  Number Take() {
    Number number{};
    const std::size_t count = m_size < sizeof number ? m_size : sizeof number;
    std::memcpy(&number, m_data, count);
    Skip(count);
    return number;
  }

  /// From 0 to less than `end`, by one byte.
  int Below(int end) { return end < 1 ? 0 : Take<std::uint8_t>() % end; }
  bool Flag() { return (Take<std::uint8_t>() & 1) != 0; }

  /// Up to the next line end, which is taken too.
  std::string Line() {
    std::size_t length = 0;
    while (length < m_size && m_data[length] != '\n') ++length;
    std::string line(reinterpret_cast<const char*>(m_data), length);
    Skip(length < m_size ? length + 1 : length);
    return line;
  }

  /// One byte says how long it is.
  std::string Text() {
    std::size_t length = Take<std::uint8_t>();
    if (length > m_size) length = m_size;
    std::string text(reinterpret_cast<const char*>(m_data), length);
    Skip(length);
    return text;
  }

  /// A whole number near 0, an odd one, or any bits: what shapes and values are made of.
  double Coordinate() {
    constexpr double kOdd[] = {0.0,    -0.0,   1e-300, 5e-324,         1e150,         -1e150,
                               1e300,  0.1,    1e16,   1.0 / 0x1p1000, 2147483648.0,  -1e-7,
                               1e-150, 0.5e-7, 1e7,    1.0000000001,   0.99999999999, 3.0};
    const int kind = Below(8);
    if (kind == 0) return Take<double>();
    if (kind == 1) return kOdd[Below(sizeof kOdd / sizeof *kOdd)];
    if (kind == 2) return Take<std::int16_t>() / 64.0;
    return Take<std::int8_t>() / 8.0;
  }

 private:
  void Skip(std::size_t count) {
    m_data += count;
    m_size -= count;
  }

  const std::uint8_t* m_data;
  std::size_t m_size;
};
