#pragma once
// The sub-forms shared by the programs: frmComponent, frmMemo, frmUnit, frmK_Value,
// frmEnthalpy. Each writes its summary label to the calling main form (by BatchMode).
#include "screens/calc_grid.h"
#include "screens/sub_form.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace tervale::screens {

class FrmComponent : public SubForm {
  Q_OBJECT
 public:
  FrmComponent(ScreenContext& ctx, QWidget* parent = nullptr);
  void retranslate() override;
  CalcGrid* Grid() const { return vaSpreadComp_; }

 protected:
  bool Store() override;

 private:
  void Load();
  void SearchDatabase();
  CalcGrid* vaSpreadComp_;
  QLabel* lblTitle_;
  QPushButton* cmdDBSearch_;
};

class FrmMemo : public SubForm {
  Q_OBJECT
 public:
  FrmMemo(ScreenContext& ctx, QWidget* parent = nullptr);
  void retranslate() override;
  QPlainTextEdit* Text() const { return txtMemoText_; }

 protected:
  bool Store() override;

 private:
  QLabel* lblMemo_;
  QPlainTextEdit* txtMemoText_;
  QPushButton* cmdErase_;
};

class FrmUnit : public SubForm {
  Q_OBJECT
 public:
  FrmUnit(ScreenContext& ctx, QWidget* parent = nullptr);
  void retranslate() override;
  QComboBox* TempList() const { return cboTemp_; }
  QComboBox* PressList() const { return cboPress_; }
  QComboBox* HeatList() const { return cboHeat_; }

 protected:
  bool Store() override;

 private:
  QLabel *lblTitle_, *lblTemp_, *lblPress_, *lblHeat_;
  QComboBox *cboTemp_, *cboPress_, *cboHeat_;
};

class FrmKValue : public SubForm {
  Q_OBJECT
 public:
  FrmKValue(ScreenContext& ctx, QWidget* parent = nullptr);
  void retranslate() override;
  QComboBox* MethodList() const { return cboK_Value_; }
  CalcGrid* ConstantsGrid() const { return vaSpreadAntoine_; }
  CalcGrid* MatrixGrid() const { return vaSpreadWilson_; }
  QLineEdit* AlphaBox() const { return txtNRTLAlpha_; }
  QGroupBox* MatrixFrame() const { return fraWison_; }

 protected:
  bool Store() override;

 private:
  void ShowMatrix();  // the frame of the listed method, from the stored matrix
  void LookUp();
  QLabel *lblMethod_, *lblAntoine_, *lblMatrix_, *lblAlpha_;
  QComboBox* cboK_Value_;
  CalcGrid* vaSpreadAntoine_;
  QGroupBox* fraWison_;
  CalcGrid* vaSpreadWilson_;
  QLineEdit* txtNRTLAlpha_;
  QPushButton *cmdDBAntoine_, *cmdDBWilson_;
  bool loading_ = true;
};

class FrmEnthalpy : public SubForm {
  Q_OBJECT
 public:
  FrmEnthalpy(ScreenContext& ctx, QWidget* parent = nullptr);
  void retranslate() override;
  QComboBox* MethodList() const { return cboEnthalpy_; }
  CalcGrid* Grid() const { return vaSpreadEnthalpy_; }

 protected:
  bool Store() override;

 private:
  void ShowLayout();  // the grid of the listed method, from the stored coefficients
  QLabel *lblMethod_, *lblEquation_, *lblGroup1_, *lblGroup2_;
  QComboBox* cboEnthalpy_;
  CalcGrid* vaSpreadEnthalpy_;
  QPushButton* cmdDBEnthalpy_;
};

}  // namespace tervale::screens
