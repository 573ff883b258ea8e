#include "Messages.h"

namespace qelhost {

bool Messages::Show(const std::string& text, QelMessageBox_e kind) {
  if (m_sink) m_sink(text, kind);
  const bool isQuestion = kind == MessageBox_YesNo || kind == MessageBox_OkCancel;
  if (!isBatch && m_box) return m_box(text, kind) || !isQuestion;
  if (!isQuestion) return true;
  if (m_answers.empty()) return false;
  const bool answer = m_answers.front();
  m_answers.pop_front();
  return answer;
}

void Messages::Wait(const std::string& text) {
  waitText = text;
  if (m_waitWatch) m_waitWatch(text);
}

}  // namespace qelhost
