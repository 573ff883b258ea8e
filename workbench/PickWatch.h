// What applying the pick in hand would change, kept up to date.
#pragma once

#include <QObject>
#include <QTimer>

#include "PickPreview.h"
#include "PlotArea.h"
#include "Workspace.h"

namespace marquell::workbench {

/// Asks the add-ons after every deed, once the window has nothing more urgent to do: of a drag's
/// many deeds only those are asked about that there is time for.
class PickWatch : public QObject {
  Q_OBJECT

 public:
  PickWatch(Workspace& workspace, PlotArea& plot, QObject* parent);

  /// What the last question found.
  const qelhost::PickPreview& Preview() const { return m_preview; }

 signals:
  /// "1 284 cells in 3 zones", or empty.
  void Counted(const QString& text);

 private:
  void Ask();

  Workspace& m_workspace;
  PlotArea& m_plot;
  QTimer m_timer;
  qelhost::PickPreview m_preview;
};

}  // namespace marquell::workbench
