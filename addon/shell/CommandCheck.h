#pragma once

namespace qelvane::qelutiltools {

/// Offers the parser alone to a host that asks for it, to check lines without a data set.
void OfferCommandCheck();

}  // namespace qelvane::qelutiltools
