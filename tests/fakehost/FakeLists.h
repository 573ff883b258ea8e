#pragma once

#include "qelvane/QelUtil.h"

#include <cstdint>
#include <string>

namespace fakehost {

enum class ArgumentKind { Integer, Number, Text, Pointer };

struct Argument {
  std::string name;
  ArgumentKind kind = ArgumentKind::Integer;
  std::intptr_t integer = 0;
  double number = 0.0;
  std::string text;
  const void* pointer = nullptr;
};

/// Null when the list has none of that name.
const Argument* Find(const QelArgList* list, const char* name);
/// The same, for one that was appended as this kind: a host reads no other.
const Argument* Find(const QelArgList* list, const char* name, ArgumentKind kind);

/// False, reported as misuse, for a list that was freed or never made.
bool IsLive(const QelArgList* list, const char* function);

}  // namespace fakehost
