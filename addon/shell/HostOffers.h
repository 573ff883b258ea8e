#pragma once

namespace qelvane::qelutiltools {

/// Hands the host the functions that it may call beside the callbacks, where it knows of them.
void OfferToHost();

}  // namespace qelvane::qelutiltools
