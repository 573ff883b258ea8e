#include "Wire.h"

#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace soak {

namespace {

// The same members in the same order, both ways.

template <class Stream, class Face>
void EachOfFace(Stream&& with, Face& face) {
  with(face.nodes);
  with(face.left);
  with(face.right);
}

template <class Stream, class Zone>
void EachOfZone(Stream&& with, Zone& zone) {
  with(zone.name);
  with(zone.type);
  with(zone.ijk);
  with(zone.nodes);
  with(zone.faces);
}

template <class Stream, class Field>
void EachOfField(Stream&& with, Field& field) {
  with(field.type);
  with(field.location);
  with(field.isPassive);
  with(field.sharedWith);
  with(field.values);
}

template <class Stream, class CopyType>
void EachOfCopy(Stream&& with, CopyType& copy) {
  with(copy.plotType);
  with(copy.viewOrigin);
  with(copy.zones);
  with(copy.variables);
  with(copy.fields);
}

template <class Stream, class OutcomeType>
void EachOfOutcome(Stream&& with, OutcomeType& outcome) {
  with(outcome.isDone);
  with(outcome.error);
  with(outcome.zones);
  with(outcome.variables);
  with(outcome.fields);
  with(outcome.hiddenCells);
  with(outcome.hiddenNodes);
  with(outcome.relevantZones);
  with(outcome.misuse);
}

template <class Transfer>
bool TransferAll(std::size_t size, Transfer transfer) {
  for (std::size_t done = 0; done < size;) {
    const ssize_t count = transfer(done);
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace

void Writer::Put(const std::string& text) {
  Put(text.size());
  m_bytes += text;
}

void Writer::Put(const std::vector<bool>& bits) {
  Put(bits.size());
  for (const bool bit : bits) Put(bit);
}

void Writer::Put(const FaceCopy& face) {
  EachOfFace([this](const auto& member) { Put(member); }, face);
}
void Writer::Put(const ZoneCopy& zone) {
  EachOfZone([this](const auto& member) { Put(member); }, zone);
}
void Writer::Put(const FieldCopy& field) {
  EachOfField([this](const auto& member) { Put(member); }, field);
}
void Writer::Put(const Copy& copy) {
  EachOfCopy([this](const auto& member) { Put(member); }, copy);
}
void Writer::Put(const Outcome& outcome) {
  EachOfOutcome([this](const auto& member) { Put(member); }, outcome);
}

void Reader::Take(void* to, std::size_t size) {
  if (size > m_bytes.size() - m_at) throw std::runtime_error("a message is too short");
  std::memcpy(to, m_bytes.data() + m_at, size);
  m_at += size;
}

void Reader::Get(std::string& text) {
  std::size_t size = 0;
  Get(size);
  text.resize(size);
  Take(text.data(), size);
}

void Reader::Get(std::vector<bool>& bits) {
  std::size_t count = 0;
  Get(count);
  bits.clear();
  for (; count > 0; --count) {
    bool bit = false;
    Get(bit);
    bits.push_back(bit);
  }
}

void Reader::Get(FaceCopy& face) {
  EachOfFace([this](auto& member) { Get(member); }, face);
}
void Reader::Get(ZoneCopy& zone) {
  EachOfZone([this](auto& member) { Get(member); }, zone);
}
void Reader::Get(FieldCopy& field) {
  EachOfField([this](auto& member) { Get(member); }, field);
}
void Reader::Get(Copy& copy) {
  EachOfCopy([this](auto& member) { Get(member); }, copy);
}
void Reader::Get(Outcome& outcome) {
  EachOfOutcome([this](auto& member) { Get(member); }, outcome);
}

bool Send(int file, const std::string& bytes) {
  Writer size;
  size.Put(bytes.size());
  const std::string all = size.Bytes() + bytes;
  return TransferAll(all.size(), [&](std::size_t done) {
    return write(file, all.data() + done, all.size() - done);
  });
}

bool Receive(int file, std::string& bytes) {
  std::size_t size = 0;
  const auto into = [file](char* to, std::size_t count) {
    return TransferAll(count,
                       [=](std::size_t done) { return read(file, to + done, count - done); });
  };
  if (!into(reinterpret_cast<char*>(&size), sizeof size)) return false;
  bytes.resize(size);
  return into(bytes.data(), size);
}

}  // namespace soak
