#include "ZonesPanel.h"

#include <QHeaderView>
#include <QSignalBlocker>

#include <iterator>

namespace marquell::workbench {

namespace {

enum Column { kName, kType, kCells, kNodes, kColumnCount };

const char* NameOf(QelZoneType_e type) {
  constexpr const char* kNames[] = {"ordered", "triangles", "quadrilaterals", "tetrahedra",
                                    "bricks",  "lines",     "polygons",       "polyhedra"};
  const auto place = static_cast<std::size_t>(type);
  return place < std::size(kNames) ? kNames[place] : "";
}

QString Label(const qelhost::Zone& zone) {
  QString name = QString::fromStdString(zone.name);
  if (zone.strand == 0) return name;
  return QObject::tr("%1 at %2").arg(name).arg(zone.solutionTime);
}

}  // namespace

ZonesPanel::ZonesPanel(Workspace& workspace, QWidget* parent)
    : QTreeWidget(parent), m_workspace(workspace) {
  setObjectName("zones");
  setAccessibleName(tr("Zones"));
  setColumnCount(kColumnCount);
  setHeaderLabels({tr("Zone"), tr("Type"), tr("Cells"), tr("Nodes")});
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAlternatingRowColors(true);
  // Names before all: the rest is reached by scrolling.
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setStretchLastSection(false);
  connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
    if (column == kName) TakeCheck(item);
  });
}

void ZonesPanel::Follow() {
  const qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  const QSignalBlocker quiet(this);
  if (frame == nullptr || frame->Data() == nullptr) {
    clear();
    return;
  }
  const qelhost::DataSet& data = *frame->Data();
  if (topLevelItemCount() != data.ZoneCount()) Rebuild(data);
  for (LgIndex_t n = 1; n <= data.ZoneCount(); ++n) {
    const qelhost::Zone& zone = *data.FindZone(n);
    QTreeWidgetItem* const item = topLevelItem(n - 1);
    // Setting what is there already would lay the list out anew.
    const QString texts[] = {Label(zone), tr(NameOf(zone.Type())),
                             locale().toString(zone.CellCount()),
                             locale().toString(zone.NodeCount())};
    for (int column = 0; column < kColumnCount; ++column) {
      if (item->text(column) != texts[column]) item->setText(column, texts[column]);
    }
    const Qt::CheckState state = zone.active ? Qt::Checked : Qt::Unchecked;
    if (item->checkState(kName) != state) item->setCheckState(kName, state);
    // What an add-on draws with is the add-on's to show.
    item->setHidden(!zone.IsFromFile());
  }
}

void ZonesPanel::Rebuild(const qelhost::DataSet& data) {
  clear();
  QList<QTreeWidgetItem*> items;
  for (LgIndex_t n = 1; n <= data.ZoneCount(); ++n) {
    auto* const item = new QTreeWidgetItem;
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setTextAlignment(kCells, Qt::AlignRight | Qt::AlignVCenter);
    item->setTextAlignment(kNodes, Qt::AlignRight | Qt::AlignVCenter);
    items << item;
  }
  addTopLevelItems(items);
}

void ZonesPanel::TakeCheck(QTreeWidgetItem* item) {
  const bool isShown = item->checkState(kName) == Qt::Checked;
  m_workspace.Act("$!ZONE " + std::to_string(indexOfTopLevelItem(item) + 1) +
                  (isShown ? " ACTIVE=YES" : " ACTIVE=NO"));
}

}  // namespace marquell::workbench
