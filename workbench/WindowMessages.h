// What add-ons say, as boxes over a window.
#pragma once

#include <QWidget>

#include "Host.h"

namespace marquell::workbench {

/// Messages and questions of add-ons become boxes over the window, and their long work a bar; the
/// run is none without a user any more.
void ShowMessagesIn(qelhost::Host& host, QWidget* window);
/// Before the window goes.
void ForgetWindowMessages(qelhost::Host& host);

}  // namespace marquell::workbench
