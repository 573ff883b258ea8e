// Lost work, offered when the program starts again.
#pragma once

#include <QWidget>

#include <functional>

#include "CrashLog.h"
#include "Documents.h"

namespace marquell::workbench {

enum class LostWorkAnswer { TakeUp, Discard, Later };

/// Asks what to do with lost work. Where its file is another one now, or gone, it cannot be taken
/// up, and TakeUp counts as Later.
using LostWorkQuestion = std::function<LostWorkAnswer(QWidget* window, const LostWork& work)>;

/// The question as a box.
LostWorkAnswer AskAboutLostWork(QWidget* window, const LostWork& work);

/// Offers what earlier windows have lost, until some of it is taken up: the file is opened and the
/// steps are played. A step that fails is told, and ends it; the log stays then. Answers whether
/// something was taken up.
bool OfferLostWork(Workspace& workspace, Documents& documents, CrashLog& log, QWidget* window,
                   const LostWorkQuestion& ask = AskAboutLostWork);

}  // namespace marquell::workbench
