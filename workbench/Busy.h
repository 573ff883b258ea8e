// Work that takes a while, beside the window.
#pragma once

#include <QString>
#include <QWidget>

#include <functional>

namespace marquell::workbench {

/// How far work has come, 0 to 1; negative: that is not known. False: the user has cancelled.
using TellProgress = std::function<bool(double fraction)>;

/// Runs the work on a thread of its own while the window goes on painting. When it takes longer
/// than a moment a bar with Cancel is shown. Returns when the work has ended; what it throws is
/// thrown here. The work must touch nothing that the window shows.
void RunBeside(QWidget* window, const QString& title,
               const std::function<void(const TellProgress&)>& work);

}  // namespace marquell::workbench
