#include "Messages.h"

namespace qelhost {

bool Messages::Show(const std::string& text, QelMessageBox_e kind) {
  if (m_sink) m_sink(text, kind);
  if (kind != MessageBox_YesNo && kind != MessageBox_OkCancel) return true;
  if (m_answers.empty()) return false;
  const bool answer = m_answers.front();
  m_answers.pop_front();
  return answer;
}

}  // namespace qelhost
