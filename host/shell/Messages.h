#pragma once

#include "qelvane/Types.h"

#include <deque>
#include <functional>
#include <string>
#include <utility>

namespace qelhost {

/// What an add-on says to the user. The texts go to the sink; in a window they are shown in a box,
/// and without one questions are answered No unless an answer was queued.
class Messages {
 public:
  using Sink = std::function<void(const std::string& text, QelMessageBox_e kind)>;

  /// Shows a text with the buttons of its kind and waits: true on Yes and OK. What it answers to a
  /// text that asks nothing does not matter.
  using Box = std::function<bool(const std::string& text, QelMessageBox_e kind)>;
  using WaitWatch = std::function<void(const std::string& text)>;

  bool isBatch = true;

  /// Where texts go; nowhere when there is none.
  void SetSink(Sink sink) { m_sink = std::move(sink); }
  /// What shows boxes while isBatch is false; nothing when there is none.
  void SetBox(Box box) { m_box = std::move(box); }
  void QueueAnswer(bool yes) { m_answers.push_back(yes); }

  /// True on Yes and OK; true for a box that asks nothing.
  bool Show(const std::string& text, QelMessageBox_e kind);

  /// What the add-on is working at; empty when it is not.
  std::string waitText;
  /// Changes waitText and tells the watch.
  void Wait(const std::string& text);
  void SetWaitWatch(WaitWatch watch) { m_waitWatch = std::move(watch); }

 private:
  Sink m_sink;
  Box m_box;
  WaitWatch m_waitWatch;
  std::deque<bool> m_answers;
};

}  // namespace qelhost
