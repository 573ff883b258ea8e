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

/// Draws the plot anew while a macro is recorded. Takes the lock.
void RedrawIfRecording();

/// Takes every blank out of the text; other white space stays.
void RemoveBlanks(std::string& text);

/// The runs of characters between delimiters; none of them is empty.
void SplitString(const std::string& text, std::vector<std::string>& parts,
                 const std::string& delimiters);

}  // namespace qelvane::qelutiltools
