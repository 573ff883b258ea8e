#include "HistoryActions.h"

#include "Host.h"

namespace qelhost {

namespace {

using FieldsToMove = std::vector<ZoneVariable> (History::*)(const DataSet&);
using MoveStep = bool (History::*)(DataSet&);

bool MoveValues(Host& host, FieldsToMove fields, MoveStep move) {
  const Frame* const frame = host.frames.Active();
  const DataSetPtr data = frame == nullptr ? nullptr : frame->Data();
  if (data == nullptr) return false;
  for (const ZoneVariable& field : (host.history.*fields)(*data)) {
    host.watch.BeforeWriting(data, field.zone, field.variable);
  }
  if (!(host.history.*move)(*data)) return false;
  host.notices.Send(StateChange_VarsAltered);
  const HostPause pause(host.lock);
  // By place: a function may offer another one.
  for (std::size_t i = 0; i < host.valuesRestored.size(); ++i) host.valuesRestored[i]();
  return true;
}

}  // namespace

bool UndoValues(Host& host) { return MoveValues(host, &History::UndoFields, &History::Undo); }

bool RedoValues(Host& host) { return MoveValues(host, &History::RedoFields, &History::Redo); }

}  // namespace qelhost
