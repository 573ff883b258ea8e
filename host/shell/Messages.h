#pragma once

#include "qelvane/Types.h"

#include <deque>
#include <functional>
#include <string>

namespace qelhost {

/// What an add-on says to the user. In a run without a user the texts go to the sink, and questions
/// are answered No unless an answer was queued.
class Messages {
 public:
  using Sink = std::function<void(const std::string& text, QelMessageBox_e kind)>;

  bool isBatch = true;

  /// Where texts go; nowhere when there is none.
  void SetSink(Sink sink) { m_sink = std::move(sink); }
  void QueueAnswer(bool yes) { m_answers.push_back(yes); }

  /// True on Yes and OK; true for a box that asks nothing.
  bool Show(const std::string& text, QelMessageBox_e kind);

  /// What the add-on is working at; empty when it is not.
  std::string waitText;

 private:
  Sink m_sink;
  std::deque<bool> m_answers;
};

}  // namespace qelhost
