#include "HostOffers.h"

#include "CommandCheck.h"
#include "EntryPoint.h"
#include "HostServices.h"
#include "PickPreview.h"
#include "SessionRegistry.h"

namespace qelvane::qelutiltools {

namespace {

/// The host has put values back: an undo would take back what is not there any more.
void OnValuesRestored() {
  EntryPoint(nullptr, [] { SessionRegistry::Instance().DropUndo(); });
}

void OfferPickQuery() {
  const auto* const extension = AskHostFor<QelPickQuery_s>(QEL_EXTENSION_PICK_QUERY);
  if (extension != nullptr) extension->offer(PreviewApply);
}

void OfferHistory() {
  const auto* const extension = AskHostFor<QelHistory_s>(QEL_EXTENSION_HISTORY);
  if (extension != nullptr) extension->offer(OnValuesRestored);
}

}  // namespace

void OfferToHost() {
  OfferCommandCheck();
  OfferPickQuery();
  OfferHistory();
}

}  // namespace qelvane::qelutiltools
