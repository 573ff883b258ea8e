#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace qelhost {

/// A host command that cannot be understood or carried out; what() says why.
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The words behind a host command: those that stand alone, in order, and NAME=value pairs. Names
/// and words are in upper case; values, and words in double quotes, are as written.
struct CommandText {
  std::vector<std::string> words;
  std::map<std::string, std::string> values;

  /// The n-th word, from 0.
  /// throws  CommandError when there is none, calling it by what it should have been
  const std::string& Word(std::size_t n, const char* what) const;
  /// throws  CommandError when there is none or it is no whole number
  int Count(std::size_t n, const char* what) const;

  bool Has(const std::string& name) const { return values.count(name) > 0; }
  /// throws  CommandError when the value is missing or is no finite number
  double Number(const std::string& name) const;
  /// throws  CommandError when the value is missing or is none of YES, NO, ON, OFF, TRUE, FALSE
  bool Flag(const std::string& name) const;
  /// throws  CommandError when a word or value is there beside those named
  void Allow(std::size_t wordCount, const std::vector<std::string>& names) const;
};

/// Cuts what stands behind the command's name. Blanks around '=' are allowed.
///
/// throws  CommandError at an open quote or a value without a name
CommandText ParseCommandText(const std::string& text);

/// The whole text as a finite number, in the C locale.
///
/// throws  CommandError, calling it by name
double NumberOf(const std::string& text, const std::string& name);

std::string UpperCase(std::string text);

}  // namespace qelhost
