#include "History.h"

#include <algorithm>
#include <new>
#include <set>
#include <utility>

namespace qelhost {

// ---- the operation in hand ----

void History::Begin(const std::string& name) {
  if (m_depth++ > 0) return;
  Settle();
  m_name = name;
}

StepOutcome History::End() {
  if (m_depth == 0 || --m_depth > 0) return StepOutcome::NoStep;
  const StepOutcome outcome = Settle();
  m_name.clear();
  if (outcome == StepOutcome::TooLarge) ++m_tooLargeCount;
  return outcome;
}

History::Writing& History::WritingOf(const DataSetPtr& data) {
  for (Writing& writing : m_writings) {
    if (writing.data == data) return writing;
  }
  m_writings.push_back({data, {}});
  return m_writings.back();
}

void History::BeforeWriting(const DataSetPtr& data, LgIndex_t zone, LgIndex_t variable) {
  if (!isKept || data == nullptr) return;
  const Zone* const written = data->FindZone(zone);
  const Field* const field = data->FindField(zone, variable);
  if (written == nullptr || !written->IsFromFile() || field == nullptr) return;
  if (field->storage == nullptr) return;
  std::vector<Copy>& copies = WritingOf(data).copies;
  const auto isIt = [field](const Copy& copy) { return copy.storage == field->storage; };
  if (std::any_of(copies.rbegin(), copies.rend(), isIt)) return;
  Copy copy{field->storage, variable, nullptr, field->storage->tally.writes};
  if (!m_isTooLarge && !TakeCopy(copy, *field->view)) {
    m_isTooLarge = true;
    for (Writing& writing : m_writings) {
      for (Copy& taken : writing.copies) taken.values.reset();
    }
  }
  copies.push_back(std::move(copy));
}

/// False when there is no room for it.
bool History::TakeCopy(Copy& copy, QelFieldData& view) {
  const StoredValues values(view);
  const std::int64_t size = values.Count() * values.ValueSize();
  if (!values.IsReachable() || size > m_limit - m_copiedBytes) return false;
  try {
    copy.values = CopyOfValues(values);
  } catch (const std::bad_alloc&) {
    return false;  // what the user asks for matters more than taking it back
  }
  m_copiedBytes += size;
  return true;
}

// ---- what becomes of it ----

/// The fields that show the storage now. Its first zone may have got values of its own meanwhile,
/// and left the storage to the others.
std::vector<ZoneVariable> History::FieldsOn(const DataSet& data, const Copy& copy) {
  std::vector<ZoneVariable> fields;
  for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
    const Field* const field = data.FindField(zone, copy.variable);
    if (!data.FindZone(zone)->IsFromFile() || field == nullptr) continue;
    if (field->storage == copy.storage) fields.push_back({zone, copy.variable});
  }
  return fields;
}

/// What differs from the copies, which are used up.
std::vector<History::Record> History::RecordsOf(Writing& writing) {
  std::vector<Record> records;
  for (Copy& copy : writing.copies) {
    std::vector<ZoneVariable> fields = FieldsOn(*writing.data, copy);
    if (fields.empty()) continue;
    const Field& field = *writing.data->FindField(fields[0].zone, fields[0].variable);
    ValueRuns values = ValueRuns::Differing(StoredValues(*field.view), std::move(copy.values));
    if (!values.IsEmpty()) records.push_back({std::move(fields), std::move(values)});
  }
  return records;
}

StepOutcome History::Settle() {
  std::vector<Writing> writings = std::exchange(m_writings, {});
  const bool isTooLarge = std::exchange(m_isTooLarge, false);
  m_copiedBytes = 0;
  if (writings.empty()) return StepOutcome::NoStep;
  DropDeadTracks();
  StepOutcome outcome = StepOutcome::NoStep;
  for (Writing& writing : writings) {
    outcome = std::max(outcome, SettleOne(writing, isTooLarge));
  }
  return outcome;
}

StepOutcome History::SettleOne(Writing& writing, bool isTooLarge) {
  if (isTooLarge) return PassOver(writing);
  try {
    return Keep(writing.data, RecordsOf(writing));
  } catch (const std::bad_alloc&) {
    return PassOver(writing);
  }
}

StepOutcome History::Keep(const DataSetPtr& data, std::vector<Record> records) {
  if (records.empty()) return StepOutcome::NoStep;
  Track& track = TrackOf(data);
  Step step;
  step.name = NameOf(m_name, *data, records);
  step.number = ++m_lastNumber;
  step.revisionBefore = track.revision;
  step.revisionAfter = ++m_lastRevision;
  for (const Record& record : records) step.byteCount += record.values.ByteCount();
  step.records = std::move(records);
  track.revision = step.revisionAfter;
  Drop(track.undone);
  m_byteCount += step.byteCount;
  track.done.push_back(std::move(step));
  KeepLimit();
  return track.done.empty() ? StepOutcome::TooLarge : StepOutcome::Kept;
}

/// Nobody compared, so whatever may have been written counts as changed.
StepOutcome History::PassOver(const Writing& writing) {
  const bool mayDiffer =
      std::any_of(writing.copies.begin(), writing.copies.end(), [](const Copy& copy) {
        return copy.storage->tally.writes != copy.writes ||
               copy.storage->directWrites == DirectWrites::Possible;
      });
  if (!mayDiffer) return StepOutcome::NoStep;
  Track& track = TrackOf(writing.data);
  Drop(track.done);
  Drop(track.undone);
  track.revision = ++m_lastRevision;
  return StepOutcome::TooLarge;
}

std::string History::NameOf(const std::string& operation, const DataSet& data,
                            const std::vector<Record>& records) {
  std::set<LgIndex_t> variables;
  for (const Record& record : records) variables.insert(record.fields.front().variable);
  std::string name = operation;
  const char* separator = operation.empty() ? "" : ": ";
  for (const LgIndex_t variable : variables) {
    name += separator + data.FindVariable(variable)->name;
    separator = ", ";
  }
  return name;
}

// ---- the steps ----

History::Track& History::TrackOf(const DataSetPtr& data) {
  Track& track = m_tracks[data->Id()];
  track.data = data;
  return track;
}

History::Steps* History::StepsOf(QelUniqueID_t dataSet, Steps Track::*kind) {
  if (m_depth == 0) Settle();
  const auto track = m_tracks.find(dataSet);
  return track == m_tracks.end() ? nullptr : &(track->second.*kind);
}

void History::Drop(Steps& steps) {
  for (const Step& step : steps) m_byteCount -= step.byteCount;
  steps.clear();
}

void History::DropDeadTracks() {
  for (auto track = m_tracks.begin(); track != m_tracks.end();) {
    if (!track->second.data.expired()) {
      ++track;
      continue;
    }
    Drop(track->second.done);
    Drop(track->second.undone);
    track = m_tracks.erase(track);
  }
}

/// The oldest steps go, whoever's they are; what was undone goes with the step that it stands on.
void History::KeepLimit() {
  while (m_byteCount > m_limit) {
    Track* oldest = nullptr;
    const auto firstNumber = [](const Track& track) {
      return track.done.empty() ? track.undone.back().number : track.done.front().number;
    };
    for (auto& [id, track] : m_tracks) {
      if (track.done.empty() && track.undone.empty()) continue;
      if (oldest == nullptr || firstNumber(track) < firstNumber(*oldest)) oldest = &track;
    }
    if (oldest == nullptr) return;
    if (oldest->done.empty()) {
      Drop(oldest->undone);
      continue;
    }
    m_byteCount -= oldest->done.front().byteCount;
    oldest->done.erase(oldest->done.begin());
  }
}

namespace {

/// The storages that the fields show, each once, by a view that has its values.
std::vector<QelFieldData*> ViewsOf(DataSet& data, const std::vector<ZoneVariable>& fields) {
  std::vector<QelFieldData*> views;
  std::set<const Storage*> seen;
  for (const ZoneVariable& place : fields) {
    const Field* const field = data.FindField(place.zone, place.variable);
    if (field == nullptr || field->storage == nullptr) continue;
    if (seen.insert(field->storage.get()).second) views.push_back(field->view.get());
  }
  return views;
}

void PutBack(ValueRuns& values, const std::vector<QelFieldData*>& views) {
  for (std::size_t i = views.size(); i-- > 0;) {
    const StoredValues storage(*views[i]);
    const std::int64_t changed = i == 0 ? values.Swap(storage) : values.Put(storage);
    WriteTally& tally = views[i]->storage->tally;
    // Written even if nothing differs: what was computed from the values goes by this.
    tally.writes += std::max<std::int64_t>(changed, 1);
    tally.changed += changed;
  }
}

}  // namespace

bool History::Move(DataSet& data, Steps Track::*from, Steps Track::*to) {
  if (IsAltering()) return false;
  Steps* const steps = StepsOf(data.Id(), from);
  if (steps == nullptr || steps->empty()) return false;
  Step& step = steps->back();
  std::vector<std::pair<Record*, std::vector<QelFieldData*>>> places;
  for (Record& record : step.records) {
    places.emplace_back(&record, ViewsOf(data, record.fields));
    for (QelFieldData* const view : places.back().second) {
      if (!record.values.Fits(StoredValues(*view))) return false;
    }
  }
  Track& track = m_tracks.at(data.Id());
  const bool isUndo = to == &Track::undone;
  if (isUndo) std::reverse(places.begin(), places.end());
  for (auto& [record, views] : places) PutBack(record->values, views);
  track.revision = isUndo ? step.revisionBefore : step.revisionAfter;
  Step moved = std::move(step);
  steps->pop_back();
  (track.*to).push_back(std::move(moved));
  return true;
}

bool History::Undo(DataSet& data) { return Move(data, &Track::done, &Track::undone); }
bool History::Redo(DataSet& data) { return Move(data, &Track::undone, &Track::done); }

// ---- questions ----

const std::string* History::UndoName(QelUniqueID_t dataSet) {
  const Steps* const steps = StepsOf(dataSet, &Track::done);
  return steps == nullptr || steps->empty() ? nullptr : &steps->back().name;
}

const std::string* History::RedoName(QelUniqueID_t dataSet) {
  const Steps* const steps = StepsOf(dataSet, &Track::undone);
  return steps == nullptr || steps->empty() ? nullptr : &steps->back().name;
}

std::vector<std::string> History::Names(QelUniqueID_t dataSet, Steps Track::*kind) {
  std::vector<std::string> names;
  const Steps* const steps = StepsOf(dataSet, kind);
  if (steps == nullptr) return names;
  for (auto step = steps->rbegin(); step != steps->rend(); ++step) names.push_back(step->name);
  return names;
}

std::vector<std::string> History::UndoNames(QelUniqueID_t dataSet) {
  return Names(dataSet, &Track::done);
}

std::vector<std::string> History::RedoNames(QelUniqueID_t dataSet) {
  return Names(dataSet, &Track::undone);
}

std::vector<ZoneVariable> History::Fields(QelUniqueID_t dataSet, Steps Track::*kind) {
  std::vector<ZoneVariable> fields;
  const Steps* const steps = StepsOf(dataSet, kind);
  if (steps == nullptr || steps->empty()) return fields;
  for (const Record& record : steps->back().records) {
    fields.insert(fields.end(), record.fields.begin(), record.fields.end());
  }
  return fields;
}

std::vector<ZoneVariable> History::UndoFields(const DataSet& data) {
  return Fields(data.Id(), &Track::done);
}

std::vector<ZoneVariable> History::RedoFields(const DataSet& data) {
  return Fields(data.Id(), &Track::undone);
}

std::int64_t History::Revision(QelUniqueID_t dataSet) {
  if (m_depth == 0) Settle();
  const auto track = m_tracks.find(dataSet);
  return track == m_tracks.end() ? 0 : track->second.revision;
}

void History::Forget(QelUniqueID_t dataSet) {
  const auto track = m_tracks.find(dataSet);
  if (track == m_tracks.end()) return;
  Drop(track->second.done);
  Drop(track->second.undone);
}

void History::Clear() {
  for (auto& [id, track] : m_tracks) Forget(id);
}

}  // namespace qelhost
