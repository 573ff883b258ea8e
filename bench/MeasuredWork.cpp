#include "MeasuredWork.h"

void MeasuredWork(const marquell::bench::Work& work) {
  work();
  // Called, not jumped to: counting ends when this function returns.
  asm volatile("");
}
