#include "DialogOrder.h"

#include <algorithm>
#include <cstdlib>

namespace marquell::workbench {

using qelhost::Control;
using qelhost::ControlKind;
using qelhost::DialogModel;

namespace {

constexpr LgIndex_t kLine = 100;

bool IsField(const Control& control) {
  return control.kind == ControlKind::TextField || control.kind == ControlKind::SpinTextField ||
         control.kind == ControlKind::OptionMenu;
}

bool BearsText(const Control& control) {
  return control.kind == ControlKind::Button || control.kind == ControlKind::Toggle;
}

/// Labels have no size of their own; one line is what matters of them.
LgIndex_t HeightOf(const Control& control) {
  return control.place.height > 0 ? control.place.height : kLine;
}

LgIndex_t MiddleOf(const Control& control) { return control.place.y + HeightOf(control) / 2; }

bool AreInOneRow(const Control& a, const Control& b) {
  return std::abs(MiddleOf(a) - MiddleOf(b)) < kLine / 2;
}

bool AreInOneColumn(const Control& a, const Control& b) { return a.place.x == b.place.x; }

std::vector<const Control*> ControlsOn(const DialogModel& model, LgIndex_t holder) {
  std::vector<const Control*> controls;
  for (const LgIndex_t id : model.ChildrenOf(holder)) controls.push_back(model.Find(id));
  return controls;
}

/// Cuts into rows from the top, then sorts each from the left. Pages have no place and keep their
/// order.
void SortAsRead(std::vector<const Control*>& controls) {
  std::stable_sort(controls.begin(), controls.end(),
                   [](const Control* a, const Control* b) { return MiddleOf(*a) < MiddleOf(*b); });
  for (auto row = controls.begin(); row != controls.end();) {
    const Control& first = **row;
    const auto end = std::find_if(row, controls.end(), [&first](const Control* control) {
      return !AreInOneRow(first, *control);
    });
    std::stable_sort(row, end,
                     [](const Control* a, const Control* b) { return a->place.x < b->place.x; });
    row = end;
  }
}

void AddInOrder(const DialogModel& model, LgIndex_t holder, std::vector<LgIndex_t>& order) {
  std::vector<const Control*> controls = ControlsOn(model, holder);
  SortAsRead(controls);
  for (const Control* const control : controls) {
    order.push_back(control->id);
    AddInOrder(model, control->id, order);
  }
}

/// The label at the beginning of the control's row.
const Control* RowLabel(const Control& field, const std::vector<const Control*>& siblings) {
  const Control* found = nullptr;
  for (const Control* const label : siblings) {
    if (label->kind != ControlKind::Label || label->place.x >= field.place.x) continue;
    if (!AreInOneRow(*label, field)) continue;
    if (found == nullptr || label->place.x > found->place.x) found = label;
  }
  return found;
}

const Control* ColumnLabel(const Control& field, const std::vector<const Control*>& siblings) {
  for (const Control* const label : siblings) {
    const bool isAbove = label->place.y < field.place.y;
    if (label->kind == ControlKind::Label && isAbove && AreInOneColumn(*label, field)) return label;
  }
  return nullptr;
}

/// "Anchor X" in a table; a column with one field is called by its head alone.
QString NameOf(const Control& field, const std::vector<const Control*>& siblings) {
  const Control* const row = RowLabel(field, siblings);
  const Control* const column = ColumnLabel(field, siblings);
  QString rowText = row == nullptr ? QString() : QString::fromStdString(row->text);
  if (column == nullptr) return rowText;
  const QString columnText = QString::fromStdString(column->text);
  const auto inColumn = std::count_if(siblings.begin(), siblings.end(), [&](const Control* other) {
    return IsField(*other) && AreInOneColumn(*other, field);
  });
  return inColumn > 1 && !rowText.isEmpty() ? columnText + ' ' + rowText : columnText;
}

/// The field to the right of a label, when nothing else comes before it.
LgIndex_t FieldAfter(const Control& label, const std::vector<const Control*>& siblings) {
  const Control* next = nullptr;
  for (const Control* const other : siblings) {
    if (other->place.x <= label.place.x || !AreInOneRow(label, *other)) continue;
    if (next == nullptr || other->place.x < next->place.x) next = other;
  }
  return next != nullptr && IsField(*next) ? next->id : DialogModel::kNone;
}

/// The first letter of a word that is free, else any letter that is.
QChar FreeLetter(const QString& text, const QString& taken) {
  for (const bool wordsOnly : {true, false}) {
    for (int i = 0; i < text.size(); ++i) {
      const bool isFirst = i == 0 || text.at(i - 1).isSpace();
      const QChar letter = text.at(i).toUpper();
      if (letter.isLetterOrNumber() && (isFirst || !wordsOnly) && !taken.contains(letter)) {
        return letter;
      }
    }
  }
  return {};
}

}  // namespace

std::vector<LgIndex_t> ReadingOrder(const DialogModel& model, LgIndex_t dialog) {
  std::vector<LgIndex_t> order;
  AddInOrder(model, dialog, order);
  return order;
}

DialogTexts TextsOf(const DialogModel& model, LgIndex_t dialog, const QString& taken) {
  DialogTexts texts;
  QString used = taken.toUpper();
  std::vector<LgIndex_t> order = ReadingOrder(model, dialog);
  // What starts the work has the first choice among the letters.
  std::stable_partition(order.begin(), order.end(), [&model, dialog](LgIndex_t id) {
    return model.Find(id)->kind == ControlKind::Button && model.Find(id)->parent == dialog;
  });
  for (const LgIndex_t id : order) {
    const Control& control = *model.Find(id);
    const std::vector<const Control*> siblings = ControlsOn(model, control.parent);
    if (IsField(control)) texts.names[id] = NameOf(control, siblings);
    bool leadsSomewhere = BearsText(control);
    if (control.kind == ControlKind::Label) {
      const LgIndex_t field = FieldAfter(control, siblings);
      leadsSomewhere = field != DialogModel::kNone;
      if (leadsSomewhere) texts.fieldOfLabel[id] = field;
    }
    if (!leadsSomewhere) continue;
    const QChar letter = FreeLetter(QString::fromStdString(control.text), used);
    if (letter.isNull()) continue;
    texts.mnemonics[id] = letter;
    used += letter;
  }
  return texts;
}

}  // namespace marquell::workbench
