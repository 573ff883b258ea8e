#pragma once

#include <string>
#include <vector>

namespace fault {

/// A function of the host and how many wrong answers it knows. A wrong answer says that all is well
/// and does not fit the rest: a name that is none, more zones than there are, a number that is no
/// number.
struct Liar {
  std::string function;
  int wrongAnswers;
};
std::vector<Liar> Liars();

/// The nth call of the function, from now on and counted from 1, gets its wrong answer of that
/// number, from 0, and the fake host notes a fault; an empty name ends it.
void LieOnCall(const std::string& function, int wrongAnswer, int nth);

}  // namespace fault
