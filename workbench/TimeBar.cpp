#include "TimeBar.h"

#include <QSignalBlocker>
#include <QStyle>

#include <fmt/format.h>
#include <algorithm>

namespace marquell::workbench {

TimeBar::TimeBar(Workspace& workspace, QWidget* parent)
    : QToolBar(tr("Time"), parent),
      m_workspace(workspace),
      m_slider(new QSlider(Qt::Horizontal)),
      m_label(new QLabel) {
  setObjectName("time");
  m_slider->setObjectName("timeSlider");
  m_slider->setAccessibleName(tr("Time step"));
  m_slider->setMinimumWidth(120);
  m_slider->setTracking(true);
  m_previous = addAction(style()->standardIcon(QStyle::SP_MediaSkipBackward), tr("Previous step"),
                         [this] { m_slider->setValue(m_slider->value() - 1); });
  addWidget(m_slider);
  m_next = addAction(style()->standardIcon(QStyle::SP_MediaSkipForward), tr("Next step"),
                     [this] { m_slider->setValue(m_slider->value() + 1); });
  addWidget(m_label);
  connect(m_slider, &QSlider::valueChanged, this, &TimeBar::Take);
}

void TimeBar::Follow() {
  const qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  const bool hasData = frame != nullptr && frame->Data() != nullptr;
  m_times = hasData ? frame->Data()->SolutionTimes() : std::vector<double>();
  const bool hasSteps = m_times.size() > 1;
  m_slider->setEnabled(hasSteps);
  m_previous->setEnabled(hasSteps);
  m_next->setEnabled(hasSteps);
  if (!hasSteps) {
    m_label->setText(tr(" No time steps "));
    return;
  }
  const auto after = std::upper_bound(m_times.begin(), m_times.end(), frame->solutionTime);
  const int step = std::max(0, static_cast<int>(after - m_times.begin()) - 1);
  const QSignalBlocker quiet(m_slider);
  m_slider->setRange(0, static_cast<int>(m_times.size()) - 1);
  m_slider->setValue(step);
  m_label->setText(
      tr(" Time %1 (%2 of %3) ").arg(frame->solutionTime).arg(step + 1).arg(m_times.size()));
}

void TimeBar::Take(int step) {
  if (step < 0 || step >= static_cast<int>(m_times.size())) return;
  m_workspace.Act(fmt::format("$!TIME {}", m_times[static_cast<std::size_t>(step)]));
}

}  // namespace marquell::workbench
