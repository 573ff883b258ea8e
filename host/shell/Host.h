#pragma once

#include "AddOns.h"
#include "DialogModel.h"
#include "Frame.h"
#include "History.h"
#include "Interaction.h"
#include "LockStack.h"
#include "Menus.h"
#include "Messages.h"
#include "Notices.h"
#include "Recorder.h"
#include "ShownShape.h"
#include "StringTable.h"
#include "WorkProgress.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qelhost {

/// What one played line did to one variable.
///
/// pickedCount   values written, in all zones; where the add-on says itself how many it altered,
///               that many, which leaves out values that it prepared first
/// changedCount  of these, the ones whose stored number is another one now
/// before,after  the range over the zones written to
struct Alteration {
  LgIndex_t variable = 0;
  std::string variableName;
  QelValueLocation_e location = ValueLocation_Nodal;
  std::vector<LgIndex_t> zones;
  std::int64_t pickedCount = 0;
  std::int64_t changedCount = 0;
  Range before;
  Range after;
};

/// Watches the values that add-ons write, to say afterwards what a line did. It looks at a field's
/// range when its writable reference is handed out, so it costs one pass over what is about to be
/// altered, and nothing while it is off.
class AlterationWatch {
 public:
  void Start();
  /// Every value written is counted while this holds.
  bool IsOn() const { return m_isOn; }
  /// Called before a writable reference is handed out. Zones that no file holds are not watched.
  void BeforeWriting(const DataSetPtr& data, LgIndex_t zone, LgIndex_t variable);
  /// An add-on says how many values it altered.
  void Altered(const DataSetPtr& data, LgIndex_t zone, LgIndex_t variable, std::int64_t count);
  /// What was written since Start, by variable; stops watching.
  std::vector<Alteration> Finish();

 private:
  struct Watched {
    DataSetPtr data;
    LgIndex_t zone;
    LgIndex_t variable;
    Range before;
    WriteTally tallyBefore;
    std::optional<std::int64_t> reportedCount{};
  };
  Watched* Find(const DataSetPtr& data, LgIndex_t zone, LgIndex_t variable);

  bool m_isOn = false;
  std::vector<Watched> m_watched;
};

/// The open host: everything that an add-on can reach through the contract, and what the programs
/// do with it. One instance a process; user-interface thread only.
class Host {
 public:
  static Host& Instance();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Opens a file in a frame of its own, which becomes the active one, and tells the add-ons.
  ///
  /// throws  FileError
  Frame& OpenFile(const std::string& path);

  /// What OpenFile does with a file that was read already.
  Frame& ShowFile(DataSetPtr data, const std::string& path);

  /// Shows a data set in a new, active frame, and tells the add-ons.
  Frame& ShowDataSet(DataSetPtr data);

  /// Closes every frame and data set.
  void CloseAll();

  /// Loads the add-ons given, or those that are found by themselves when none is.
  ///
  /// throws  AddOnError
  void LoadAddOns(const std::vector<std::string>& files);

  /// Tells the add-ons that the process is about to end.
  void Quit();

  LockStack lock;
  AddOnRegistry addOns;
  Notices notices;
  IdleQueue idle;
  Menus menus;
  Messages messages;
  Recorder recorder;
  DialogModel dialogs;
  FrameList frames;
  Interaction interaction;
  StringTable strings;
  AlterationWatch watch;
  History history;
  WorkProgress progress;

  /// What add-ons answer when they are asked what their pick in hand would change.
  std::vector<QelPickQuery_pf> pickQueries;
  /// Called after undo or redo has put values back.
  std::vector<void (*)()> valuesRestored;
  /// What the user may drag, size and turn in the plot.
  ShownShape shape;

  /// Why a writable reference was refused last, when the reason is one that the user should know;
  /// empty when none was since the player cleared it.
  std::string refusedWrite;

  /// Why values could not be read that somebody needed; empty when all could.
  std::string unreadableValues;

  /// Redraws asked for; a host with a window draws at them.
  std::int64_t redrawCount = 0;
  /// Help pages asked for, the latest last.
  std::vector<std::string> helpAsked;

 private:
  Host() = default;
};

}  // namespace qelhost
