#include "OpenSide.h"

#include "PlotActions.h"

#include "qelvane/Extensions.h"
#include "qelvane/QelUtil.h"

#include <stdexcept>
#include <utility>

namespace soak {

namespace {

const QelBulkAccess_s& Bulk() {
  static const auto* const bulk =
      static_cast<const QelBulkAccess_s*>(QelUtilExtensionGet(QEL_EXTENSION_BULK_ACCESS));
  if (bulk == nullptr) throw std::runtime_error("the host shows no types of values");
  return *bulk;
}

std::string Taken(char* text) {
  const std::string taken = text == nullptr ? "" : text;
  QelUtilStringDealloc(&text);
  return taken;
}

std::string ZoneName(LgIndex_t zone) {
  char* name = nullptr;
  return QelUtilZoneGetName(zone, &name) ? Taken(name) : std::string();
}

std::string VariableName(LgIndex_t var) {
  char* name = nullptr;
  return QelUtilVarGetName(var, &name) ? Taken(name) : std::string();
}

FieldCopy FieldOf(qelhost::DataSet& data, LgIndex_t zone, LgIndex_t var) {
  FieldCopy copy;
  copy.location = QelUtilDataValueGetLocation(zone, var);
  copy.isPassive = QelUtilDataValueIsPassive(zone, var);
  if (copy.isPassive) return copy;
  // Values at cells can be had from the interface for writing alone, and looking must not write.
  const QelFieldData* const field = data.Readable(zone, var);
  copy.values.reserve(static_cast<std::size_t>(field->count));
  for (LgIndex_t n = 0; n < field->count; ++n) copy.values.push_back(field->get(field, n));
  return copy;
}

/// What only the first look needs.
void Describe(LgIndex_t zone, LgIndex_t var, FieldCopy& copy) {
  const auto spanIn = [var](LgIndex_t inZone) {
    QelFieldSpan_s span{};
    const bool isPassive = QelUtilDataValueIsPassive(inZone, var);
    if (!isPassive) Bulk().fieldSpan(QelUtilDataValueGetWritableNativeRef(inZone, var), &span);
    return span;
  };
  if (copy.isPassive) return;
  const QelFieldSpan_s span = spanIn(zone);
  if (span.first == nullptr) throw std::runtime_error("the host does not show where values lie");
  copy.type = span.type;
  for (LgIndex_t other = 1; other < zone && copy.sharedWith == 0; ++other) {
    if (spanIn(other).first == span.first) copy.sharedWith = other;
  }
}

FaceCopy FaceOf(const QelFaceMap* map, LgIndex_t face) {
  FaceCopy copy{
      {}, QelUtilDataFaceMapGetLeftElem(map, face), QelUtilDataFaceMapGetRightElem(map, face)};
  for (LgIndex_t n = 1; n <= QelUtilDataFaceMapGetNFaceNodes(map, face); ++n) {
    copy.nodes.push_back(QelUtilDataFaceMapGetFaceNode(map, face, n));
  }
  return copy;
}

ZoneCopy ZoneOf(LgIndex_t zone) {
  ZoneCopy copy;
  copy.name = ZoneName(zone);
  copy.type = QelUtilZoneGetType(zone);
  QelUtilZoneGetIJK(zone, &copy.ijk[0], &copy.ijk[1], &copy.ijk[2]);
  if (copy.type >= ZoneType_FEPolygon) {
    const QelFaceMap* const map = QelUtilDataFaceMapGetReadableRef(zone);
    for (LgIndex_t face = 1; face <= copy.ijk[2]; ++face) copy.faces.push_back(FaceOf(map, face));
  } else if (copy.type != ZoneType_Ordered) {
    const QelNodeMap* const map = QelUtilDataNodeGetReadableRef(zone);
    for (LgIndex_t element = 1; element <= copy.ijk[1]; ++element) {
      for (LgIndex_t corner = 1; corner <= copy.ijk[2]; ++corner) {
        copy.nodes.push_back(QelUtilDataNodeGetByRef(map, element, corner));
      }
    }
  }
  return copy;
}

std::vector<bool> HiddenCells(const qelhost::Zone& zone, LgIndex_t zoneNum) {
  std::vector<bool> hidden;
  for (LgIndex_t cell = 1; cell <= zone.CellCount(); ++cell) {
    hidden.push_back(!(zone.IsOrdered() ? QelUtilBlankingCheckIJKCell(zoneNum, 0, cell)
                                        : QelUtilBlankingCheckFECell(zoneNum, cell)));
  }
  return hidden;
}

std::vector<bool> HiddenNodes(const qelhost::Zone& zone, LgIndex_t zoneNum) {
  std::vector<bool> hidden;
  for (LgIndex_t node = 1; node <= zone.NodeCount(); ++node) {
    hidden.push_back(!QelUtilBlankingCheckDataPoint(zoneNum, node));
  }
  return hidden;
}

std::vector<LgIndex_t> RelevantZones(LgIndex_t zoneCount) {
  std::vector<LgIndex_t> zones;
  QelSet* set = nullptr;
  if (!QelUtilZoneGetRelevant(QelUtilSolutionTimeGetCurrent(), false, &set)) return zones;
  for (LgIndex_t zone = 1; zone <= zoneCount; ++zone) {
    if (QelUtilSetIsMember(set, zone)) zones.push_back(zone);
  }
  QelUtilSetDealloc(&set);
  return zones;
}

}  // namespace

OpenSide::OpenSide() : m_host(qelhost::Host::Instance()), m_player(m_host) {
  m_host.LoadAddOns({MARQUELL_ADDON});
}

Copy OpenSide::Begin(const qelhost::DataSetPtr& data) {
  const qelhost::Frame& frame = m_host.ShowDataSet(data);
  m_host.idle.Run();
  m_zoneCount = data->ZoneCount();
  const qelhost::HostAction lock(m_host.lock);
  Copy copy;
  copy.plotType = QelUtilFrameGetPlotType();
  copy.viewOrigin = frame.view.origin;
  const LgIndex_t varCount = QelUtilDataSetGetNumVars();
  for (LgIndex_t var = 1; var <= varCount; ++var) copy.variables.push_back(VariableName(var));
  for (LgIndex_t zone = 1; zone <= m_zoneCount; ++zone) {
    copy.zones.push_back(ZoneOf(zone));
    std::vector<FieldCopy>& fields = copy.fields.emplace_back();
    for (LgIndex_t var = 1; var <= varCount; ++var) {
      fields.push_back(FieldOf(*data, zone, var));
      Describe(zone, var, fields.back());
    }
  }
  return copy;
}

Outcome OpenSide::Play(const std::string& line) {
  const qelhost::LineResult result = m_player.Play(line);
  if (!result.isDone) ++m_failedLines;
  return Look(result.isDone, result.message);
}

Outcome OpenSide::Look(bool isDone, const std::string& error) {
  const qelhost::HostAction lock(m_host.lock);
  qelhost::DataSet& data = *m_host.frames.Active()->Data();
  Outcome outcome;
  outcome.isDone = isDone;
  outcome.error = error;
  const LgIndex_t varCount = QelUtilDataSetGetNumVars();
  for (LgIndex_t var = 1; var <= varCount; ++var) outcome.variables.push_back(VariableName(var));
  const bool isBlanking = QelUtilBlankingIsActive();
  for (LgIndex_t zone = 1; zone <= QelUtilDataSetGetNumZones(); ++zone) {
    outcome.zones.push_back(ZoneName(zone));
    if (zone > m_zoneCount) continue;
    std::vector<FieldCopy>& fields = outcome.fields.emplace_back();
    for (LgIndex_t var = 1; var <= varCount; ++var) fields.push_back(FieldOf(data, zone, var));
    if (!isBlanking) continue;
    outcome.hiddenCells.push_back(HiddenCells(*data.FindZone(zone), zone));
    outcome.hiddenNodes.push_back(HiddenNodes(*data.FindZone(zone), zone));
  }
  outcome.relevantZones = RelevantZones(m_zoneCount);
  return outcome;
}

std::string OpenSide::End() {
  m_host.CloseAll();
  m_host.idle.Run();
  // A failed line may leave the text that the add-on replaced, and nothing else may be left.
  const std::size_t left = m_host.strings.Count();
  m_host.strings = qelhost::StringTable();
  if (left > std::exchange(m_failedLines, 0)) return "strings were left over in the open host";
  return m_host.lock.Depth() == 0 ? std::string() : "a lock was left open in the open host";
}

}  // namespace soak
