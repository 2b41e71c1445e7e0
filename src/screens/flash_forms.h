#pragma once
// The flash program: frmFlash and its condensing curve, frmFlashCondensingCurve.
#include <array>
#include <functional>

#include "flash/flash_program.h"
#include "screens/calc_grid.h"
#include "screens/chart_panel.h"
#include "screens/sub_form.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace tervale::screens {

class FrmFlash : public MainForm {
  Q_OBJECT
 public:
  explicit FrmFlash(ScreenContext& ctx, QWidget* parent = nullptr);
  ~FrmFlash() override;
  void retranslate() override;

  // Summary labels written by the shared sub-forms.
  void ShowComponentCount(int nc) override;
  void ShowUnitLabels(const QString& temp, const QString& press, const QString& heat) override;
  void ShowKValueMethod(const QString& text) override;
  void ShowEnthalpyMethod(const QString& text) override;
  void RefreshComponents() override;

  // The whole case shown again from the state.
  void Redisplay();
  // The calculation type chosen in optCalcType.
  void SelectCalcType(int calcType);
  int CalcType() const;

  QLineEdit* TempBox() const { return txtTemp_; }
  QLineEdit* Temp2Box() const { return txtTemp2_; }
  QLineEdit* PressBox() const { return txtPress_; }
  QLabel* TempLabel() const { return lblTemp_; }
  QLabel* VFLabel() const { return lblVFData_; }
  CalcGrid* FeedGrid() const { return spdData_; }
  CalcGrid* ResultGrid() const { return spdData2_; }
  // The curve form of the last condensing-curve run, while it is open (for the screenshots).
  void SetCurveHook(std::function<void(QDialog&)> hook) { curveHook_ = std::move(hook); }

 public slots:
  void GoCalc();                 // cmdGoCalc
  void ReadData();               // cmdReadData
  void SaveData();               // cmdSaveData
  void LoadExample(int number);  // cmdSample1, cmdSample2
  void OpenSubForm(int which);   // 0 component, 1 K-value, 2 enthalpy, 3 unit, 4 memo

 private:
  void ShowResult(const FlashResult& r);
  void ClearResult();
  void StoreBoxes();  // FlashTemp, FlashPress from the text boxes

  QGroupBox* fraCalcType_;
  std::array<QRadioButton*, 6> optCalcType_{};
  QLabel *lblTemp_, *lblTemp2_, *lblPress_, *lblVF_, *lblVFData_;
  QLabel *lblTempUnit_, *lblTemp2Unit_, *lblPressUnit_;
  QLineEdit *txtTemp_, *txtTemp2_, *txtPress_;
  QLabel *lblNCCaption_, *lblNC_, *lblKValueCaption_, *lblKValue_, *lblEnthalpyCaption_,
      *lblEnthalpy_, *lblHeatCaption_, *lblHeatUnit_, *lblFeed_, *lblResult_;
  CalcGrid* spdData_;
  CalcGrid* spdData2_;
  QPushButton *cmdComponent_, *cmdK_Value_, *cmdEnthalpy_, *cmdUnit_, *cmdMemo_, *cmdReadData_,
      *cmdSaveData_, *cmdSample1_, *cmdSample2_, *cmdGoCalc_, *cmdExit_;
  bool filling_ = false;
  std::function<void(QDialog&)> curveHook_;
};

class FrmFlashCondensingCurve : public SubForm {
  Q_OBJECT
 public:
  FrmFlashCondensingCurve(ScreenContext& ctx, const CondensingCurve& curve,
                          QWidget* parent = nullptr);
  void retranslate() override;
  ChartPanel* Plot() const { return picCalc_; }
  CalcGrid* PointGrid() const { return spdData_; }
  QLineEdit* XBox() const { return txtX_; }
  QLineEdit* YBox() const { return txtY_; }
  const CondensingCurve& Curve() const { return curve_; }

 public slots:
  // The detail of point 1..201, as a click on its column shows it.
  void ShowPoint(int index);

 protected:
  bool Store() override { return true; }

 private:
  void Draw();
  CondensingCurve curve_;
  QLabel *lblTitle_, *lblPress_, *lblX_, *lblY_;
  ChartPanel* picCalc_;
  CalcGrid* spdData_;
  QLineEdit *txtX_, *txtY_;
  QPushButton* cmdExit_;
};

}  // namespace tervale::screens
