#include "HostLock.h"
#include "Selvane.h"

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

bool Selvane::UndoLastAlter(bool fromMacro) {
  const HostLock lock;
  if (!m_isUndoAvailable) return false;
  const std::optional<ValueModifier> inverse = InverseOf(m_modifier);
  if (!inverse) return false;

  /// Puts the user's modifier back and ends the one level of undo, also when an error passes.
  struct EndOfUndo {
    Selvane& session;
    const ValueModifier modifier;
    ~EndOfUndo() {
      session.m_modifier = modifier;
      session.DiscardUndo();
    }
  };
  const EndOfUndo endOfUndo{*this, m_modifier};

  m_modifier = *inverse;
  return RepeatLastPick(fromMacro);
}

bool Selvane::RepeatLastPick(bool fromMacro) {
  if (m_pickKind != PickKind::Element) {
    if (m_wasSurfaceOnly) return RepeatLastSurface(fromMacro);
    return fromMacro ? ApplyAreaFromMacro() : ApplyArea(true);
  }
  if (m_pickedElement < 1 || m_pickedZone < 1) return true;
  const std::optional<FieldWriter> writer = OpenForWriting(m_pickedZone, OnNoReference::Refuse);
  // A surface pick may have been of another variable since, with fewer values.
  if (!writer || m_pickedElement > QelUtilDataValueGetCountByRef(writer->field)) return false;
  AlterElement(*writer, m_pickedElement);
  return true;
}

/// From where it began: a seed that was refused since then has taken that one's place.
bool Selvane::RepeatLastSurface(bool fromMacro) {
  struct SeedGivenLast {
    Seed& seed;
    const Seed given;
    ~SeedGivenLast() { seed = given; }
  };
  const SeedGivenLast givenLast{m_seed, m_seed};

  m_seed = m_writtenSeed;
  return fromMacro ? ApplySurfaceFromMacro() : ApplySurface(true);
}

}  // namespace qelvane::qelutiltools
