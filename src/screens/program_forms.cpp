#include "screens/program_forms.h"

#include <QLineEdit>

#include "screens/flash_forms.h"
#include "screens/shared_subforms.h"

namespace tervale::screens {

std::vector<std::pair<int, ProgramFactory>> ProgramForms() {
  return {{2, [](ScreenContext& ctx) -> MainForm* { return new FrmFlash(ctx); }}};
}

std::vector<std::function<std::unique_ptr<QWidget>()>> ScreenshotMakers(ScreenContext& ctx) {
  std::vector<std::function<std::unique_ptr<QWidget>()>> makers;
  // The flash screen after example 1 and an isothermal flash; the sub-forms then show
  // the example's data.
  makers.push_back([&ctx] {
    auto flash = std::make_unique<FrmFlash>(ctx);
    flash->LoadExample(1);
    flash->SelectCalcType(4);
    flash->GoCalc();
    return flash;
  });
  makers.push_back([&ctx] { return std::make_unique<FrmComponent>(ctx); });
  makers.push_back([&ctx] { return std::make_unique<FrmMemo>(ctx); });
  makers.push_back([&ctx] { return std::make_unique<FrmUnit>(ctx); });
  makers.push_back([&ctx] { return std::make_unique<FrmKValue>(ctx); });
  makers.push_back([&ctx] {
    ctx.s.EnthalpyMethod = 1;  // the polynomial layout
    return std::make_unique<FrmEnthalpy>(ctx);
  });
  makers.push_back([&ctx]() -> std::unique_ptr<QWidget> {
    const CondensingCurve curve =
        CalcCondensingCurve(ctx.s, std::nullopt, std::nullopt, ctx.s.Flash.FlashPress);
    auto form = std::make_unique<FrmFlashCondensingCurve>(ctx, curve);
    form->ShowPoint(101);
    return form;
  });
  return makers;
}

}  // namespace tervale::screens
