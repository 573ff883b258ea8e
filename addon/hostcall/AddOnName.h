#pragma once

/// The name that the add-on registers under: owner of its macro commands and of its locks. A macro
/// because it is part of the text of internal errors.
#define ADDON_NAME "Marquell"
