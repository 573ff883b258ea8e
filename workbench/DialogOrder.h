// What a dialog's layout says without words: what comes after what, and which text names which
// field.
#pragma once

#include <QChar>
#include <QString>

#include <map>
#include <vector>

#include "DialogModel.h"

namespace marquell::workbench {

/// The controls of a dialog as one reads them: row by row, from the left, each page's controls
/// after the tab or form that holds the page. The dialog itself is left out.
std::vector<LgIndex_t> ReadingOrder(const qelhost::DialogModel& model, LgIndex_t dialog);

/// Which texts belong to which controls.
struct DialogTexts {
  /// What a control is called, for those that bear no text of their own.
  std::map<LgIndex_t, QString> names;
  /// The field or menu that a label stands before.
  std::map<LgIndex_t, LgIndex_t> fieldOfLabel;
  /// The letter that, with Alt, leads to the control; for a label, to its field.
  std::map<LgIndex_t, QChar> mnemonics;
};

/// taken: letters that are used by what is not in the model.
DialogTexts TextsOf(const qelhost::DialogModel& model, LgIndex_t dialog, const QString& taken);

}  // namespace marquell::workbench
