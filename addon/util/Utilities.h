#pragma once

#include "qelvane/Types.h"

#include <exception>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {

/// Shows the text, or the general one when it is null, in the host's error box; nothing in batch
/// mode. The exception's own text is asked for and not shown. Takes the lock.
void ShowAddOnError(const std::exception& error, const char* message);

/// Turns the 3D view until its viewer angles are the three given, and fits it if asked. Each
/// difference is a remainder by 360 that keeps its sign, so the view may turn the long way. Takes
/// the lock.
///
/// throws  std::runtime_error at the first host call that fails
void RotateViewTo(double psiDeg, double alphaDeg, double thetaDeg, bool fit);

/// The first zone of exactly that name, from 1; 0 when there is none or no data set.
LgIndex_t FindZoneByName(const std::string& name);

/// Tells the host that the values of one variable changed in one zone.
void NotifyVarsAltered(LgIndex_t zoneNum, LgIndex_t varNum);
void SendVarsAlteredStateChange(const QelSet* zoneSet, const QelSet* varSet);

// Value blanking of the active frame. Constraints count from 1. Each throws std::runtime_error when
// the host's argument list cannot be made; what was set before stays set. Whether the host takes a
// value is not checked: the result is its answer to the last one.

/// Switches value blanking.
QelSetValueResult_e SetValueBlankingInclude(bool include);

/// Whether value blanking is on. Takes the lock.
bool GetValueBlankingInclude();

/// Which values decide about a cell, and whether all of it is hidden.
QelSetValueResult_e SetValueBlankingCellMode(bool wholeCell, int mode);
void GetValueBlankingCellSettings(bool& wholeCell, int& mode, bool& include);

/// Switches one constraint.
QelSetValueResult_e SetConstraintInclude(LgIndex_t constraintNum, bool include);

/// Writes a whole constraint but for its variable B, which stays as it is.
QelSetValueResult_e SetValueBlankConstraint(LgIndex_t constraintNum, bool include, LgIndex_t varA,
                                            double valCutoff, int relativeOp, int mode);
void GetValueBlankConstraint(LgIndex_t constraintNum, bool& include, LgIndex_t& varA,
                             LgIndex_t& varB, int& relativeOp, int& mode, double& valCutoff);

/// Draws the plot anew while a macro is recorded. Takes the lock.
void RedrawIfRecording();

/// Takes every blank out of the text; other white space stays.
void RemoveBlanks(std::string& text);

/// The runs of characters between delimiters; none of them is empty.
void SplitString(const std::string& text, std::vector<std::string>& parts,
                 const std::string& delimiters);

}  // namespace qelvane::qelutiltools
