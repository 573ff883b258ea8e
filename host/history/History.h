// Undo and redo of values.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "DataSet.h"
#include "ValueRuns.h"

namespace qelhost {

struct ZoneVariable {
  LgIndex_t zone = 0;
  LgIndex_t variable = 0;
};

/// What the end of an operation made of it.
enum class StepOutcome {
  NoStep,   ///< it belongs to an outer operation, or changed no value
  Kept,     ///< it can be undone
  TooLarge  ///< it changed more than the limit allows to keep, so neither it nor what was done to
            ///< the data set before can be undone
};

/// Each operation that alters values of zones from a file is a step of the data set that it alters.
/// Undo and redo put every value back bit by bit. Steps end with their data set. Values of zones
/// that add-ons draw with are nobody's data and are not kept.
///
/// What is written is seen by asking for it: a copy is taken when a writable reference is handed
/// out, and only what differs from it at the operation's end is kept. Copies of the operation in
/// hand come on top of the limit, and are themselves no larger than it. What an add-on writes
/// through a reference of an earlier operation, without asking again, is not seen.
class History {
 public:
  static constexpr std::int64_t kDefaultLimit = std::int64_t{512} << 20;

  /// While it is false nothing is kept, and costs nothing.
  bool isKept = false;

  /// Bytes; the oldest steps go when there are more.
  void SetLimit(std::int64_t bytes) { m_limit = bytes; }
  std::int64_t ByteCount() const { return m_byteCount; }

  /// Brackets an operation. Operations nest: one inside another belongs to it. What is altered
  /// outside any becomes a step of its own when the next operation begins.
  void Begin(const std::string& name);
  StepOutcome End();
  /// The operation in hand may have altered values: they are no state to go back from.
  bool IsAltering() const { return m_depth > 0 && !m_writings.empty(); }
  /// How many operations have ended as too large to be undone.
  std::int64_t TooLargeCount() const { return m_tooLargeCount; }

  /// Called before a writable reference is handed out; the field has its values.
  void BeforeWriting(const DataSetPtr& data, LgIndex_t zone, LgIndex_t variable);

  /// What undo and redo would do next, "<operation>: <variables>"; null when there is nothing.
  const std::string* UndoName(QelUniqueID_t dataSet);
  const std::string* RedoName(QelUniqueID_t dataSet);
  /// All of them, the next one first.
  std::vector<std::string> UndoNames(QelUniqueID_t dataSet);
  std::vector<std::string> RedoNames(QelUniqueID_t dataSet);
  /// The fields that it would write.
  std::vector<ZoneVariable> UndoFields(const DataSet& data);
  std::vector<ZoneVariable> RedoFields(const DataSet& data);

  /// Puts values back; the storages count them as written. False, and nothing is changed, when
  /// there is no step, or while IsAltering.
  bool Undo(DataSet& data);
  bool Redo(DataSet& data);

  /// The number of the state that the values are in: 0 as they were opened, another one after each
  /// step, a step's own again after undo and redo. Two equal numbers mean equal values. Changes
  /// that are too large to keep count like any other.
  std::int64_t Revision(QelUniqueID_t dataSet);

  /// Forgets the steps of a data set, which keeps its revision.
  void Forget(QelUniqueID_t dataSet);
  void Clear();

 private:
  /// The values of one storage, which is found again by the fields that show it. Those that show
  /// another one by then began as copies of it.
  struct Record {
    std::vector<ZoneVariable> fields;
    ValueRuns values;
  };
  struct Step {
    std::string name;
    std::int64_t number = 0;  ///< ascending, so that the oldest of all data sets is known
    std::int64_t revisionBefore = 0;
    std::int64_t revisionAfter = 0;
    std::int64_t byteCount = 0;
    std::vector<Record> records;
  };
  using Steps = std::vector<Step>;
  struct Track {
    std::weak_ptr<DataSet> data;
    std::int64_t revision = 0;
    Steps done;    ///< the latest last
    Steps undone;  ///< the next to redo last
  };
  /// A storage as it was when the operation in hand could first write it.
  struct Copy {
    std::shared_ptr<Storage> storage;
    LgIndex_t variable = 0;
    RawBytes values;
    std::int64_t writes = 0;  ///< of the storage's tally
  };
  struct Writing {
    DataSetPtr data;
    std::vector<Copy> copies;
  };

  static std::vector<ZoneVariable> FieldsOn(const DataSet& data, const Copy& copy);
  static std::vector<Record> RecordsOf(Writing& writing);
  static std::string NameOf(const std::string& operation, const DataSet& data,
                            const std::vector<Record>& records);

  Writing& WritingOf(const DataSetPtr& data);
  bool TakeCopy(Copy& copy, QelFieldData& view);
  StepOutcome Settle();
  StepOutcome SettleOne(Writing& writing, bool isTooLarge);
  StepOutcome Keep(const DataSetPtr& data, std::vector<Record> records);
  StepOutcome PassOver(const Writing& writing);
  Track& TrackOf(const DataSetPtr& data);
  Steps* StepsOf(QelUniqueID_t dataSet, Steps Track::*kind);
  std::vector<std::string> Names(QelUniqueID_t dataSet, Steps Track::*kind);
  std::vector<ZoneVariable> Fields(QelUniqueID_t dataSet, Steps Track::*kind);
  bool Move(DataSet& data, Steps Track::*from, Steps Track::*to);
  void Drop(Steps& steps);
  void DropDeadTracks();
  void KeepLimit();

  std::int64_t m_limit = kDefaultLimit;
  std::int64_t m_byteCount = 0;
  int m_depth = 0;
  std::int64_t m_tooLargeCount = 0;
  std::string m_name;
  std::vector<Writing> m_writings;  ///< of the operation in hand
  std::int64_t m_copiedBytes = 0;
  bool m_isTooLarge = false;
  std::map<QelUniqueID_t, Track> m_tracks;
  std::int64_t m_lastNumber = 0;
  std::int64_t m_lastRevision = 0;
};

/// Holds an operation open.
class HistoryOperation {
 public:
  HistoryOperation(History& history, const std::string& name) : m_history(history) {
    m_history.Begin(name);
  }
  ~HistoryOperation() { m_history.End(); }
  HistoryOperation(const HistoryOperation&) = delete;
  HistoryOperation& operator=(const HistoryOperation&) = delete;

 private:
  History& m_history;
};

}  // namespace qelhost
