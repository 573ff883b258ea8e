#pragma once

#include "qelvane/QelUtil.h"

#include <cstdint>
#include <string>

namespace fakehost {

struct Argument {
  std::string name;
  std::intptr_t integer = 0;
  double number = 0.0;
  std::string text;
  const void* pointer = nullptr;
};

/// Null when the list has none of that name.
const Argument* Find(const QelArgList* list, const char* name);

/// False, reported as misuse, for a list that was freed or never made.
bool IsLive(const QelArgList* list, const char* function);

}  // namespace fakehost
