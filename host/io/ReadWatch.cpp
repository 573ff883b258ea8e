#include "ReadWatch.h"

#include <vtkAlgorithm.h>
#include <vtkCallbackCommand.h>
#include <vtkNew.h>

#include <utility>

namespace qelhost {

namespace {

FileProgress& Progress() {
  thread_local FileProgress progress;
  return progress;
}

void TellOf(vtkObject* caller, unsigned long, void*, void*) {
  auto* const reader = vtkAlgorithm::SafeDownCast(caller);
  if (reader == nullptr) return;
  Progress().Say(reader->GetProgress());
  if (Progress().isCancelled) reader->SetAbortExecute(1);
}

void StopIfCancelled() {
  if (Progress().isCancelled) throw ReadCancelled();
}

}  // namespace

ReadCancelled::ReadCancelled() : std::runtime_error("reading was cancelled") {}

ReadWatch::ReadWatch(std::function<bool(double)> tell) : m_told(Progress(), std::move(tell)) {}

ReadPart::ReadPart(std::int64_t from, std::int64_t to, std::int64_t all)
    : m_part(Progress(), static_cast<double>(from) / static_cast<double>(all),
             static_cast<double>(to) / static_cast<double>(all)) {}

bool IsReadWatched() { return static_cast<bool>(Progress().tell); }

void TellRead(double fraction) {
  Progress().Say(fraction);
  StopIfCancelled();
}

void RunWatched(vtkAlgorithm* reader, const std::function<void()>& work) {
  if (!IsReadWatched()) {
    work();
    return;
  }
  TellRead(0.0);
  vtkNew<vtkCallbackCommand> observer;
  observer->SetCallback(TellOf);
  const unsigned long tag = reader->AddObserver(vtkCommand::ProgressEvent, observer);
  work();
  reader->RemoveObserver(tag);
  TellRead(1.0);
}

void UpdateWatched(vtkAlgorithm* reader) {
  RunWatched(reader, [reader] { reader->Update(); });
}

}  // namespace qelhost
