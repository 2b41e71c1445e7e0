#pragma once
// The programs' main forms known to the menu, and the screens a screenshot run renders.
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "screens/screen_context.h"
#include "screens/sub_form.h"

namespace tervale::screens {

using ProgramFactory = std::function<MainForm*(ScreenContext&)>;

// (ActiveProgram, factory) of every program with a main form.
std::vector<std::pair<int, ProgramFactory>> ProgramForms();

// Makers of every built screen with example data in it, in the order they are rendered
// (each may rely on the state the previous ones left).
std::vector<std::function<std::unique_ptr<QWidget>()>> ScreenshotMakers(ScreenContext& ctx);

}  // namespace tervale::screens
