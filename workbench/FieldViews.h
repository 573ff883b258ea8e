// The controls with a field to fill in: menus, text fields, fields with arrows.
#pragma once

#include <memory>

#include "ControlViews.h"

namespace marquell::workbench {

std::unique_ptr<ControlView> MakeOptionMenuView(const qelhost::Control& control, QWidget* holder,
                                                DialogDeeds& deeds);
std::unique_ptr<ControlView> MakeTextFieldView(const qelhost::Control& control, QWidget* holder,
                                               DialogDeeds& deeds);
std::unique_ptr<ControlView> MakeSpinFieldView(const qelhost::Control& control, QWidget* holder,
                                               DialogDeeds& deeds);

}  // namespace marquell::workbench
