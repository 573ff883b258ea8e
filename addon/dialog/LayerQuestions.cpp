#include "LayerQuestions.h"

#include "Controls.h"
#include "HostLock.h"
#include "Utilities.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

struct Question {
  const char* text = "";
  bool (*isNeeded)() = nullptr;
  void (*onYes)() = nullptr;
  bool isAllowed = true;  ///< until the user says No
};

void Ask(Question& question) {
  const HostLock lock;
  if (!question.isAllowed || !question.isNeeded()) return;
  if (QelUtilDialogMessageBox(question.text, MessageBox_YesNo)) {
    question.onYes();
  } else {
    question.isAllowed = false;
  }
}

Question edgeOrMesh = {
    "Either the Edge or Mesh layer must be active in order to see the 3D pick boundary.\n\nWould "
    "you like to turn on the Edge layer ?",
    [] {
      return !QelUtilFieldLayerIsActive(SV_SHOWEDGE) && !QelUtilFieldLayerIsActive(SV_SHOWMESH);
    },
    [] { QelUtilFieldLayerSetIsActive(SV_SHOWEDGE, TRUE); }};

Question mesh = {
    "The Mesh layer must be active in order to see the 3D sphere.\n\nWould you like to turn it on "
    "?",
    [] { return !QelUtilFieldLayerIsActive(SV_SHOWMESH); },
    [] { QelUtilFieldLayerSetIsActive(SV_SHOWMESH, TRUE); }};

Question shade = {
    "The Shade layer must be active in order to shade the 3D pick boundary surface.\n\nWould you "
    "like to turn it on ?",
    [] { return !QelUtilFieldLayerIsActive(SV_SHOWSHADE); },
    [] { QelUtilFieldLayerSetIsActive(SV_SHOWSHADE, TRUE); }};

Question valueBlanking = {
    "Value blanking must be on to see the results of this operation.\n\nWould you like to turn it "
    "on ?",
    [] { return !QelUtilBlankingIsActive(); },
    [] {
      SetValueBlankingInclude(true);
      QelGUIToggleSet(Controls.includeBlankingToggle, QelUtilBlankingIsActive());
    }};

}  // namespace

void AskForEdgeOrMesh() { Ask(edgeOrMesh); }
void AskForMesh() { Ask(mesh); }
void AskForShade() { Ask(shade); }
void AskForValueBlanking() { Ask(valueBlanking); }

}  // namespace qelvane::qelutiltools
