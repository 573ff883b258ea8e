#include "OutputPlan.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "../FileError.h"
#include "../WriteCancel.h"

namespace qelhost {
namespace {

/// Closed without a word when something else went wrong; Close says what a close finds.
class Target {
 public:
  explicit Target(const std::string& path)
      : m_path(path),
        m_descriptor(open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
    if (m_descriptor < 0) throw FileError(path, std::strerror(errno));
  }
  ~Target() {
    if (m_descriptor >= 0) close(m_descriptor);
  }
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  int Descriptor() const { return m_descriptor; }
  [[noreturn]] void Fail() const { throw FileError(m_path, std::strerror(errno)); }
  void Close() {
    if (close(std::exchange(m_descriptor, -1)) != 0) Fail();
  }

  void WriteAt(std::int64_t place, const char* from, std::int64_t count) const {
    while (count > 0) {
      const ssize_t now = pwrite(m_descriptor, from, static_cast<std::size_t>(count), place);
      if (now < 0 && errno == EINTR) continue;
      if (now < 0) Fail();
      if (now == 0) throw FileError(m_path, std::strerror(ENOSPC));
      place += now;
      from += now;
      count -= now;
    }
  }

  void CopyAt(std::int64_t place, const ByteFile& source, std::int64_t from,
              std::int64_t count) const {
    while (count > 0) {
      loff_t in = from;
      loff_t out = place;
      const ssize_t now = copy_file_range(source.Descriptor(), &in, m_descriptor, &out,
                                          static_cast<std::size_t>(count), 0);
      if (now < 0 && errno == EINTR) continue;
      if (now <= 0) return CopyThroughMemory(place, source, from, count);
      place += now;
      from += now;
      count -= now;
    }
  }

 private:
  /// Between file systems, on systems that cannot copy for us, and at the end of a file that became
  /// shorter, which the read then tells.
  void CopyThroughMemory(std::int64_t place, const ByteFile& source, std::int64_t from,
                         std::int64_t count) const {
    thread_local std::vector<char> buffer;
    constexpr std::int64_t kAtOnce = 1 << 20;
    while (count > 0) {
      const std::int64_t now = std::min(count, kAtOnce);
      buffer.resize(static_cast<std::size_t>(now));
      source.ReadAt(from, buffer.data(), now);
      WriteAt(place, buffer.data(), now);
      place += now;
      from += now;
      count -= now;
    }
  }

  std::string m_path;
  int m_descriptor;
};

}  // namespace

void OutputPlan::Append(Part part) {
  if (part.count <= 0) return;
  part.place = m_size;
  m_size += part.count;
  m_parts.push_back(part);
}

void OutputPlan::Copy(std::int64_t begin, std::int64_t end) {
  Part part;
  part.count = end - begin;
  part.sourcePlace = begin;
  // One long copy instead of many short ones.
  if (!m_parts.empty() && part.count > 0 && m_parts.back().sourcePlace >= 0 &&
      m_parts.back().sourcePlace + m_parts.back().count == begin) {
    m_parts.back().count += part.count;
    m_size += part.count;
    return;
  }
  Append(part);
}

void OutputPlan::Add(std::string bytes) {
  Part part;
  part.count = static_cast<std::int64_t>(bytes.size());
  part.text = m_texts.size();
  m_texts.push_back(std::move(bytes));
  Append(part);
}

void OutputPlan::Refer(const char* bytes, std::int64_t count) {
  Part part;
  part.count = count;
  part.memory = bytes;
  Append(part);
}

/// The parts, long ones cut.
std::vector<OutputPlan::Part> OutputPlan::Pieces() const {
  constexpr std::int64_t kLongest = 8 << 20;
  std::vector<Part> pieces;
  for (const Part& part : m_parts) {
    for (std::int64_t done = 0; done < part.count; done += kLongest) {
      Part piece = part;
      piece.place += done;
      piece.count = std::min(kLongest, part.count - done);
      if (part.sourcePlace >= 0) {
        piece.sourcePlace += done;
      } else {
        const char* const memory = part.memory != nullptr ? part.memory : m_texts[part.text].data();
        piece.memory = memory + done;
      }
      pieces.push_back(piece);
    }
  }
  return pieces;
}

void OutputPlan::Write(const std::string& path) const {
  Target target(path);
  // One after the other: writers of one file only wait for each other.
  for (const Part& piece : Pieces()) {
    TellWrite(static_cast<double>(piece.place) / static_cast<double>(m_size));
    if (piece.sourcePlace >= 0) {
      target.CopyAt(piece.place, m_source, piece.sourcePlace, piece.count);
    } else {
      target.WriteAt(piece.place, piece.memory, piece.count);
    }
  }
  target.Close();
}

}  // namespace qelhost
