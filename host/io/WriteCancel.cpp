#include "WriteCancel.h"

#include <vtkAlgorithm.h>
#include <vtkCallbackCommand.h>
#include <vtkNew.h>

#include <utility>

namespace qelhost {

namespace {

bool (*g_isCancelled)() = nullptr;

FileProgress& WriteProgress() {
  thread_local FileProgress progress;
  return progress;
}

bool IsCancelled() {
  return WriteProgress().isCancelled || (g_isCancelled != nullptr && g_isCancelled());
}

void AbortWhenCancelled(vtkObject* caller, unsigned long, void*, void*) {
  auto* const writer = vtkAlgorithm::SafeDownCast(caller);
  if (writer == nullptr) return;
  WriteProgress().Say(writer->GetProgress());
  if (IsCancelled()) writer->SetAbortExecute(1);
}

}  // namespace

WriteCancelled::WriteCancelled() : std::runtime_error("writing was cancelled") {}

void SetWriteCancel(bool (*isCancelled)()) { g_isCancelled = isCancelled; }

WriteWatch::WriteWatch(std::function<bool(double)> tell)
    : m_told(WriteProgress(), std::move(tell)) {}

WritePart::WritePart(std::int64_t n, std::int64_t count)
    : m_part(WriteProgress(), static_cast<double>(n) / static_cast<double>(count),
             static_cast<double>(n + 1) / static_cast<double>(count)) {}

void TellWrite(double fraction) {
  WriteProgress().Say(fraction);
  StopIfCancelled();
}

void StopIfCancelled() {
  if (IsCancelled()) throw WriteCancelled();
}

void StopWhenCancelled(vtkAlgorithm* writer) {
  vtkNew<vtkCallbackCommand> observer;
  observer->SetCallback(AbortWhenCancelled);
  writer->AddObserver(vtkCommand::ProgressEvent, observer);
}

}  // namespace qelhost
