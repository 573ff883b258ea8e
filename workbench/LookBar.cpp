#include "LookBar.h"

#include <QDoubleValidator>
#include <QLabel>
#include <QSignalBlocker>

#include "PlotActions.h"

namespace marquell::workbench {

namespace {

QLineEdit* MakeNumberField(const char* name, const QString& tip) {
  auto* const field = new QLineEdit;
  field->setObjectName(name);
  field->setToolTip(tip);
  field->setAccessibleName(tip);
  auto* const validator = new QDoubleValidator(field);
  validator->setLocale(QLocale::c());
  field->setValidator(validator);
  field->setMaximumWidth(field->fontMetrics().averageCharWidth() * 14);
  return field;
}

void SetNumber(QLineEdit* field, double value) {
  if (!field->hasFocus()) field->setText(QString::number(value, 'g', 6));
}

}  // namespace

LookBar::LookBar(Workspace& workspace, LookSettings& look, QWidget* parent)
    : QToolBar(tr("Colours"), parent),
      m_workspace(workspace),
      m_look(look),
      m_variable(new QComboBox),
      m_colours(new QComboBox),
      m_min(MakeNumberField("rangeMin", tr("Least value of the colours"))),
      m_max(MakeNumberField("rangeMax", tr("Greatest value of the colours"))) {
  setObjectName("look");
  m_variable->setObjectName("colourVariable");
  m_variable->setAccessibleName(tr("Variable that colours the plot"));
  m_variable->setToolTip(m_variable->accessibleName());
  m_variable->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  m_colours->setObjectName("colourMap");
  m_colours->setAccessibleName(tr("Colours"));
  m_colours->setToolTip(m_colours->accessibleName());
  for (const std::string& name : qelhost::ColourMapNames()) {
    m_colours->addItem(QString::fromStdString(name));
  }
  addWidget(new QLabel(tr(" Colour by ")));
  addWidget(m_variable);
  addWidget(m_colours);
  addWidget(new QLabel(tr(" from ")));
  addWidget(m_min);
  addWidget(new QLabel(tr(" to ")));
  addWidget(m_max);
  m_automatic = addAction(tr("Whole range"));
  m_automatic->setObjectName("wholeRange");
  m_automatic->setCheckable(true);
  m_automatic->setToolTip(tr("The colours span all values of the variable"));

  connect(m_variable, qOverload<int>(&QComboBox::activated), this, &LookBar::TakeVariable);
  connect(m_colours, qOverload<int>(&QComboBox::activated), this, [this] {
    m_workspace.Do(
        [this](qelhost::Host&) { m_look.colourMap = m_colours->currentText().toStdString(); });
  });
  connect(m_min, &QLineEdit::editingFinished, this, [this] { TakeRange(*m_min); });
  connect(m_max, &QLineEdit::editingFinished, this, [this] { TakeRange(*m_max); });
  connect(m_automatic, &QAction::triggered, this, [this](bool on) {
    m_workspace.Do([this, on](qelhost::Host&) { m_look.isRangeAutomatic = on; });
  });
}

void LookBar::Follow() {
  qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  const bool hasData = frame != nullptr && frame->Data() != nullptr;
  setEnabled(hasData);
  FollowVariables(hasData ? frame : nullptr);
  m_colours->setCurrentText(QString::fromStdString(m_look.colourMap));
  m_automatic->setChecked(m_look.isRangeAutomatic);
  if (!hasData) return;
  const qelhost::PlotLook look = LookOf(*frame, m_look);
  SetNumber(m_min, look.min);
  SetNumber(m_max, look.max);
}

void LookBar::FollowVariables(const qelhost::Frame* frame) {
  QStringList names{tr("Nothing")};
  LgIndex_t chosen = 0;
  if (frame != nullptr) {
    for (LgIndex_t n = 1; n <= frame->Data()->VariableCount(); ++n) {
      names << QString::fromStdString(frame->Data()->FindVariable(n)->name);
    }
    chosen = ColourVariable(*frame, m_look);
  }
  QStringList shown;
  for (int n = 0; n < m_variable->count(); ++n) shown << m_variable->itemText(n);
  const QSignalBlocker quiet(m_variable);
  if (shown != names) {
    m_variable->clear();
    m_variable->addItems(names);
  }
  m_variable->setCurrentIndex(chosen);
}

void LookBar::TakeVariable(int place) {
  m_workspace.Do([this, place](qelhost::Host& host) {
    m_look.isColoured = place > 0;
    m_look.isRangeAutomatic = true;
    if (place > 0) {
      const qelhost::HostAction lock(host.lock);
      qelhost::SetContourVariable(host, place);
    }
  });
}

void LookBar::TakeRange(const QLineEdit& typed) {
  double min = QLocale::c().toDouble(m_min->text());
  double max = QLocale::c().toDouble(m_max->text());
  // The other end comes along, until it is typed as well.
  if (min > max) (&typed == m_min ? max : min) = QLocale::c().toDouble(typed.text());
  qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  if (frame == nullptr) return;
  const qelhost::PlotLook now = LookOf(*frame, m_look);
  const auto isShownAs = [](double value, double number) {
    return QString::number(value, 'g', 6) == QString::number(number, 'g', 6);
  };
  // Leaving a field as it was fixes nothing.
  if (isShownAs(now.min, min) && isShownAs(now.max, max)) return;
  m_workspace.Do([this, min, max](qelhost::Host&) {
    m_look.isRangeAutomatic = false;
    m_look.min = min;
    m_look.max = max;
  });
}

}  // namespace marquell::workbench
