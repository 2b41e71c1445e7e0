#include "screens/program_forms.h"

#include "screens/shared_subforms.h"

namespace tervale::screens {

std::vector<std::pair<int, ProgramFactory>> ProgramForms() {
  return {};
}

std::vector<std::function<std::unique_ptr<QWidget>()>> ScreenshotMakers(ScreenContext& ctx) {
  std::vector<std::function<std::unique_ptr<QWidget>()>> makers;
  makers.push_back([&ctx] { return std::make_unique<FrmComponent>(ctx); });
  makers.push_back([&ctx] { return std::make_unique<FrmMemo>(ctx); });
  makers.push_back([&ctx] { return std::make_unique<FrmUnit>(ctx); });
  makers.push_back([&ctx] { return std::make_unique<FrmKValue>(ctx); });
  makers.push_back([&ctx] { return std::make_unique<FrmEnthalpy>(ctx); });
  return makers;
}

}  // namespace tervale::screens
