#include "WriteCancel.h"

#include <vtkAlgorithm.h>
#include <vtkCallbackCommand.h>
#include <vtkNew.h>

namespace qelhost {

namespace {

bool (*g_isCancelled)() = nullptr;

bool IsCancelled() { return g_isCancelled != nullptr && g_isCancelled(); }

void AbortWhenCancelled(vtkObject* caller, unsigned long, void*, void*) {
  auto* const writer = vtkAlgorithm::SafeDownCast(caller);
  if (writer != nullptr && IsCancelled()) writer->SetAbortExecute(1);
}

}  // namespace

WriteCancelled::WriteCancelled() : std::runtime_error("writing was cancelled") {}

void SetWriteCancel(bool (*isCancelled)()) { g_isCancelled = isCancelled; }

void StopIfCancelled() {
  if (IsCancelled()) throw WriteCancelled();
}

void StopWhenCancelled(vtkAlgorithm* writer) {
  vtkNew<vtkCallbackCommand> observer;
  observer->SetCallback(AbortWhenCancelled);
  writer->AddObserver(vtkCommand::ProgressEvent, observer);
}

}  // namespace qelhost
