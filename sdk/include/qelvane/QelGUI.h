/* The dialog toolkit that a host offers to its add-ons.
 *
 * Ids         every dialog and control is an LgIndex_t; -1 is the host's main dialog, -2 none. The
 * host owns them all; none is ever reused. Unknown ids are ignored. A dialog, tab, form or page id
 * may be a parent. Positions   hundredths of the dialog font's average character width (x, width)
 * and line height (y, height). Callbacks   a ...Set function changes what is shown and never calls
 * the control's callback; only a user's action does. Threads     user-interface thread. With no
 * display every function works on an invisible model of the dialog. */
#ifndef QELVANE_QELGUI_H
#define QELVANE_QELGUI_H

#include "qelvane/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Dialogs -----------------------------------------------------------------------------------
 */

/* A modeless dialog, not yet shown. -2 on failure. */
QEL_API LgIndex_t QelGUIDialogCreateModeless(LgIndex_t parent, LgIndex_t width, LgIndex_t height,
                                             const char* title, QelGUIVoidCallback_pf init,
                                             QelGUIVoidCallback_pf close,
                                             QelGUIVoidCallback_pf help);
/* Shows the dialog, makes it "up", then calls its init callback; one that is up is raised and init
 * is called again. */
QEL_API void QelGUIDialogLaunch(LgIndex_t dialog);
/* Hides it. The window's own close button calls the close callback, which drops it. */
QEL_API void QelGUIDialogDrop(LgIndex_t dialog);
QEL_API bool QelGUIDialogIsUp(LgIndex_t dialog);

/* ---- Adding controls: each answers the new control's id, -2 on failure
 * ----------------------------- */

/* rgb: bitmapWidth x bitmapHeight pixels, three bytes each, top row first; copied. */
QEL_API LgIndex_t QelGUIBitmapToggleAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                        LgIndex_t height, LgIndex_t bitmapWidth,
                                        LgIndex_t bitmapHeight, const char* rgb,
                                        bool useTransparentColor, LgIndex_t red, LgIndex_t green,
                                        LgIndex_t blue, QelGUIIntCallback_pf valueChanged);
QEL_API void QelGUISetToolTip(LgIndex_t control, const char* text);
QEL_API LgIndex_t QelGUITabAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                               LgIndex_t height, QelGUIIntCallback_pf pageActivated,
                               QelGUIIntCallback_pf pageDeactivated);
QEL_API LgIndex_t QelGUITabAddPage(LgIndex_t tab, const char* label);
/* page: from 1. */
QEL_API void QelGUITabSetCurrentPage(LgIndex_t tab, LgIndex_t page);
QEL_API LgIndex_t QelGUIFormAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                LgIndex_t height);
QEL_API LgIndex_t QelGUIFormAddPage(LgIndex_t form);
/* Shows the page given, by its id, and hides the form's others. */
QEL_API void QelGUIFormSetCurrentPage(LgIndex_t page);
QEL_API LgIndex_t QelGUILabelAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, const char* text);
/* items: separated by commas. */
QEL_API LgIndex_t QelGUIOptionMenuAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                      LgIndex_t height, const char* items,
                                      QelGUIIntCallback_pf itemChosen);
QEL_API LgIndex_t QelGUIToggleAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                  LgIndex_t height, const char* label,
                                  QelGUIIntCallback_pf valueChanged);
QEL_API LgIndex_t QelGUIButtonAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                  LgIndex_t height, const char* label,
                                  QelGUIVoidCallback_pf pressed);
QEL_API LgIndex_t QelGUITextFieldAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                     LgIndex_t height, QelGUITextCallback_pf entered);
QEL_API LgIndex_t QelGUISpinTextFieldAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y,
                                         LgIndex_t width, LgIndex_t height,
                                         QelGUITextCallback_pf entered, QelGUIVoidCallback_pf up,
                                         QelGUIVoidCallback_pf down);
/* Up to five toggles of which one is on; labels that are null are left out. */
QEL_API LgIndex_t QelGUIRadioBoxAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                    LgIndex_t height, const char* label1, const char* label2,
                                    const char* label3, const char* label4, const char* label5,
                                    QelGUIIntCallback_pf chosen);

/* ---- Reading and setting controls ---------------------------------------------------------------
 */

/* The toggle that is on, from 1. */
QEL_API LgIndex_t QelGUIRadioBoxGetToggle(LgIndex_t box);
QEL_API void QelGUIToggleSet(LgIndex_t toggle, bool on);
/* The chosen item, from 1; 0 when there is none. */
QEL_API LgIndex_t QelGUIOptionMenuGet(LgIndex_t menu);
QEL_API void QelGUIOptionMenuSet(LgIndex_t menu, LgIndex_t item);
QEL_API LgIndex_t QelGUIOptionMenuGetItemCount(LgIndex_t menu);
QEL_API void QelGUIOptionMenuDeleteAllItems(LgIndex_t menu);
QEL_API void QelGUIOptionMenuAppendItem(LgIndex_t menu, const char* item);
QEL_API void QelGUILabelSetText(LgIndex_t label, const char* text);
QEL_API void QelGUIButtonSetText(LgIndex_t button, const char* text);
/* The whole text, blanks around it allowed, as strtod reads it in the C locale; false, and value
 * untouched, when it is not a number. */
QEL_API bool QelGUITextFieldGetDouble(LgIndex_t field, double* value);
QEL_API void QelGUITextFieldSetString(LgIndex_t field, const char* text);
QEL_API void QelGUISetSensitivity(LgIndex_t control, bool sensitive);
QEL_API void QelGUISetVisibility(LgIndex_t control, bool visible);

#ifdef __cplusplus
}
#endif

#endif
