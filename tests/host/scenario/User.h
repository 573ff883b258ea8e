// A user of the built add-on, on the open host without a window.
#pragma once

#include "DataSet.h"
#include "Host.h"

#include <functional>
#include <string>
#include <vector>

namespace scenario {

/// Makes the data that a story is about, the same at every call.
using MakeData = std::function<std::vector<qelhost::DataSetPtr>()>;

/// Cubes of bricks, n cells along each edge, one unit a cell, with p at nodes and c at cells.
qelhost::DataSetPtr Cube(int n);
/// A flat grid of quadrilaterals, n cells along each edge.
qelhost::DataSetPtr Plate(int n);

/// Everything the user does is done as a toolkit would do it: by the texts and pictures' tips that
/// stand in the dialog, with the idle queue after each action. A control that is not shown or is
/// greyed fails the test.
class User {
 public:
  explicit User(MakeData makeData);
  ~User();

  // The host
  void OpenDialog();
  void Draw(const std::string& geometryCommand);
  void Do(const std::string& hostCommand);
  void Click(LgIndex_t zone, LgIndex_t cell, LgIndex_t node, bool withCtrl);
  void AnswerNext(bool yes);
  void OpenMore(const qelhost::DataSetPtr& data);
  void CloseEverything();

  // The dialog
  void Press(const std::string& label);
  void Tool(const std::string& tip, bool on = true);
  void Toggle(const std::string& label, bool on);
  void ChooseItem(const std::string& item);
  void ChooseVariable(const std::string& name);
  void EnterModifier(const std::string& text);
  void Page(LgIndex_t page);
  /// n counts the dialog's spin fields in the order in which they were made.
  void Spin(int n, bool up);
  void EnterNumber(int n, const std::string& text);
  void CloseDialog();
  void AskForHelp();

  bool IsDialogUp() const;
  bool IsSensitive(const std::string& label) const;
  std::string FieldText(int n) const;
  const std::vector<std::string>& Said() const { return m_said; }

  /// What was recorded so far.
  std::vector<std::string> Journal() const;

  /// Plays what was recorded on fresh data and compares every value; records once more meanwhile
  /// and compares the journals. Closes the data the user worked on.
  void ExpectReplayGivesTheSame();

  qelhost::Host& host;

 private:
  LgIndex_t Find(qelhost::ControlKind kind, const std::string& textOrTip) const;
  LgIndex_t SpinField(int n) const;
  void ShowAll();

  MakeData m_makeData;
  std::vector<std::string> m_said;
};

/// Every value of every variable in every zone that came with the data, bit by bit.
std::vector<std::vector<double>> ValuesOf(qelhost::DataSet& data);

}  // namespace scenario
