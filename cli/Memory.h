// When there is no more memory.
#pragma once

namespace marquell::cli {

/// Keeps some memory back for what is to be done when there is no other: destructors that allocate
/// would end the process. Where even that is not enough, the process ends with the message and the
/// code of any other failure.
void KeepMemoryBack();

/// Says that there is not enough memory, without needing any.
void PrintNoMemory();

}  // namespace marquell::cli
