#include "ReadWatch.h"

#include <vtkAlgorithm.h>
#include <vtkCallbackCommand.h>
#include <vtkNew.h>

#include <utility>

namespace qelhost {

namespace {

FileProgress& ReadProgress() {
  thread_local FileProgress progress;
  return progress;
}

void TellOf(vtkObject* caller, unsigned long, void*, void*) {
  auto* const reader = vtkAlgorithm::SafeDownCast(caller);
  if (reader == nullptr) return;
  ReadProgress().Say(reader->GetProgress());
  if (ReadProgress().isCancelled) reader->SetAbortExecute(1);
}

void StopIfReadCancelled() {
  if (ReadProgress().isCancelled) throw ReadCancelled();
}

}  // namespace

ReadCancelled::ReadCancelled() : std::runtime_error("reading was cancelled") {}

ReadWatch::ReadWatch(std::function<bool(double)> tell) : m_told(ReadProgress(), std::move(tell)) {}

ReadPart::ReadPart(std::int64_t from, std::int64_t to, std::int64_t all)
    : m_part(ReadProgress(), static_cast<double>(from) / static_cast<double>(all),
             static_cast<double>(to) / static_cast<double>(all)) {}

bool IsReadWatched() { return static_cast<bool>(ReadProgress().tell); }

void TellRead(double fraction) {
  ReadProgress().Say(fraction);
  StopIfReadCancelled();
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
