#include "PickPreview.h"

#include "Bits.h"
#include "Controls.h"
#include "DialogState.h"
#include "EntryPoint.h"
#include "Selvane.h"
#include "SessionRegistry.h"

#include "qelvane/QelGUI.h"

#include <algorithm>

namespace qelvane::qelutiltools {

namespace {

/// What the host has beyond the last bit stays.
void Clear(std::uint64_t* bits, std::int64_t bitCount) {
  const std::int64_t wholeWords = bitCount / kBitsPerWord;
  std::fill_n(bits, wholeWords, 0);
  const auto rest = static_cast<int>(bitCount % kBitsPerWord);
  if (rest > 0) bits[wholeWords] &= ~LowestBits(rest);
}

/// The dialog may be bound to what another frame shows until the host is idle.
Selvane* SessionOfOpenDialog() {
  Selvane* const session = DialogSession();
  const bool isOpen = session != nullptr && QelGUIDialogIsUp(Controls.dialog) &&
                      SessionRegistry::Instance().IsCurrent(*session);
  return isOpen ? session : nullptr;
}

}  // namespace

bool PreviewApply(LgIndex_t zone, std::uint64_t* bits, std::int64_t bitCount) {
  if (bits == nullptr || bitCount < 0) return false;
  Clear(bits, bitCount);
  bool isAnswered = false;
  const bool isDone = ContainSilently([&] {
    Selvane* const session = SessionOfOpenDialog();
    if (session == nullptr || NeedsSeed(*session)) return;
    isAnswered = session->MarkWhatApplyWrites(zone, bits, bitCount);
  });
  return isDone && isAnswered;
}

}  // namespace qelvane::qelutiltools
