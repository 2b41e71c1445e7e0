#include "screens/shared_subforms.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "io/record_writer.h"
#include "screens/db_lookup.h"

namespace tervale::screens {
namespace {

QHBoxLayout* OkCancelRow(QPushButton* ok, QPushButton* cancel, QWidget* extra = nullptr) {
  auto* row = new QHBoxLayout;
  if (extra) row->addWidget(extra);
  row->addStretch();
  row->addWidget(ok);
  row->addWidget(cancel);
  return row;
}

QStringList ComponentTitles(const SharedCalcState& s) {
  QStringList names;
  for (int i = 1; i <= s.NC; ++i) {
    const QString n = Q(s.Comp.CompName[static_cast<size_t>(i)]);
    names << (n.isEmpty() ? QString::number(i) : n);
  }
  return names;
}

void RefreshHost(ScreenContext& ctx) {
  if (MainFormLabels* host = ctx.Host()) host->RefreshComponents();
}

constexpr BiText kQueryComponent{"Querry Component(&S)", "成分検索(&S)"};

}  // namespace

// ---------------------------------------------------------------- frmComponent

FrmComponent::FrmComponent(ScreenContext& ctx, QWidget* parent) : SubForm(ctx, parent) {
  setObjectName(QStringLiteral("frmComponent"));
  lblTitle_ = new QLabel(this);
  vaSpreadComp_ = new CalcGrid(s_.MaxComponents, 6, this);
  vaSpreadComp_->setObjectName(QStringLiteral("vaSpreadComp"));
  vaSpreadComp_->setColumnWidth(0, 150);
  cmdDBSearch_ = new QPushButton(this);
  cmdDBSearch_->setObjectName(QStringLiteral("cmdDBSearch"));
  connect(cmdDBSearch_, &QPushButton::clicked, this, &FrmComponent::SearchDatabase);
  MakeOkCancel();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblTitle_);
  layout->addWidget(vaSpreadComp_, 1);
  layout->addLayout(OkCancelRow(cmdOK_, cmdCancel_, cmdDBSearch_));
  resize(720, 520);
  Load();
  retranslate();
}

void FrmComponent::retranslate() {
  SetCaption({"Component", "成分"});
  lblTitle_->setText(T(s_, {"Components (name, molecular weight, critical constants)",
                            "成分 (成分名・分子量・臨界定数)"}));
  vaSpreadComp_->SetColumnTitles({T(s_, {"Name", "成分名"}), T(s_, {"Mol Wt", "分子量"}),
                                  QStringLiteral("Tc"), QStringLiteral("Pc"), QStringLiteral("Vc"),
                                  QStringLiteral("omega")});
  cmdDBSearch_->setText(T(s_, kQueryComponent));
  RetranslateOkCancel();
}

void FrmComponent::Load() {
  vaSpreadComp_->ClearCells();
  const auto& c = s_.Comp;
  for (int i = 1; i <= s_.NC; ++i) {
    const auto k = static_cast<size_t>(i);
    vaSpreadComp_->SetText(i, 1, Q(c.CompName[k]));
    vaSpreadComp_->SetNumber(i, 2, c.CompMW[k]);
    vaSpreadComp_->SetNumber(i, 3, c.CompTc[k]);
    vaSpreadComp_->SetNumber(i, 4, c.CompPc[k]);
    vaSpreadComp_->SetNumber(i, 5, c.CompVc[k]);
    vaSpreadComp_->SetNumber(i, 6, c.CompOmega[k]);
  }
}

bool FrmComponent::Store() {
  // Named rows are taken in order; unnamed rows are skipped.
  std::vector<int> rows;
  for (int r = 1; r <= vaSpreadComp_->rowCount(); ++r)
    if (!vaSpreadComp_->Text(r, 1).trimmed().isEmpty()) rows.push_back(r);
  if (static_cast<int>(rows.size()) > s_.MaxComponents) {
    const std::string limit = std::to_string(s_.MaxComponents);
    ShowMessage(s_, s_.LanguageFlag == 1 ? "Over max components (" + limit + ")"
                                         : "最大成分数(" + limit + ")を越えています。");
    return false;
  }
  auto& c = s_.Comp;
  int nc = 0;
  for (int r : rows) {
    const auto k = static_cast<size_t>(++nc);
    c.CompName[k] = S(vaSpreadComp_->Text(r, 1).trimmed());
    c.CompMW[k] = vaSpreadComp_->Number(r, 2);
    c.CompTc[k] = vaSpreadComp_->Number(r, 3);
    c.CompPc[k] = vaSpreadComp_->Number(r, 4);
    c.CompVc[k] = vaSpreadComp_->Number(r, 5);
    c.CompOmega[k] = vaSpreadComp_->Number(r, 6);
  }
  s_.NC = nc;
  if (MainFormLabels* host = ctx_.Host()) host->ShowComponentCount(nc);
  RefreshHost(ctx_);
  return true;
}

void FrmComponent::SearchDatabase() {
  RunDatabaseLookup(ctx_, db::LookupKind::Component, vaSpreadComp_, this);
}

// ---------------------------------------------------------------- frmMemo

FrmMemo::FrmMemo(ScreenContext& ctx, QWidget* parent) : SubForm(ctx, parent) {
  setObjectName(QStringLiteral("frmMemo"));
  lblMemo_ = new QLabel(this);
  txtMemoText_ = new QPlainTextEdit(this);
  txtMemoText_->setObjectName(QStringLiteral("txtMemoText"));
  txtMemoText_->setTabChangesFocus(true);
  cmdErase_ = new QPushButton(this);
  cmdErase_->setObjectName(QStringLiteral("cmdErase"));
  connect(cmdErase_, &QPushButton::clicked, txtMemoText_, &QPlainTextEdit::clear);
  MakeOkCancel();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblMemo_);
  layout->addWidget(txtMemoText_, 1);
  layout->addLayout(OkCancelRow(cmdOK_, cmdCancel_, cmdErase_));
  resize(560, 360);
  // Activate: the stored lines joined again (trailing empty lines left out).
  int last = 0;
  for (int i = 1; i <= kMaxMemoLines; ++i)
    if (!s_.MemoLine[static_cast<size_t>(i)].empty()) last = i;
  QStringList lines;
  for (int i = 1; i <= last; ++i) lines << Q(s_.MemoLine[static_cast<size_t>(i)]);
  txtMemoText_->setPlainText(lines.join(QLatin1Char('\n')));
  retranslate();
}

void FrmMemo::retranslate() {
  SetCaption({"Memo", "メモ"});
  lblMemo_->setText(T(s_, {"Memorandum (max 10Line)", "メモ入力"}));
  cmdErase_->setText(T(s_, {"Erase(&E)", "消去(&E)"}));
  RetranslateOkCancel();
}

bool FrmMemo::Store() {
  QString text = txtMemoText_->toPlainText();
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  const QStringList lines = text.split(QLatin1Char('\n'));
  for (int i = 1; i <= kMaxMemoLines; ++i)
    s_.MemoLine[static_cast<size_t>(i)] = i <= lines.size() ? S(lines[i - 1]) : std::string();
  return true;
}

// ---------------------------------------------------------------- frmUnit

FrmUnit::FrmUnit(ScreenContext& ctx, QWidget* parent) : SubForm(ctx, parent) {
  setObjectName(QStringLiteral("frmUnit"));
  lblTitle_ = new QLabel(this);
  lblTemp_ = new QLabel(this);
  lblPress_ = new QLabel(this);
  lblHeat_ = new QLabel(this);
  cboTemp_ = new QComboBox(this);
  cboTemp_->setObjectName(QStringLiteral("cboTemp"));
  cboPress_ = new QComboBox(this);
  cboPress_->setObjectName(QStringLiteral("cboPress"));
  cboHeat_ = new QComboBox(this);
  cboHeat_->setObjectName(QStringLiteral("cboHeat"));
  MakeOkCancel();
  auto* grid = new QGridLayout;
  grid->addWidget(lblTemp_, 0, 0);
  grid->addWidget(cboTemp_, 0, 1);
  grid->addWidget(lblPress_, 1, 0);
  grid->addWidget(cboPress_, 1, 1);
  grid->addWidget(lblHeat_, 2, 0);
  grid->addWidget(cboHeat_, 2, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblTitle_);
  layout->addLayout(grid);
  layout->addStretch();
  layout->addLayout(OkCancelRow(cmdOK_, cmdCancel_));
  resize(420, 300);
  retranslate();
}

void FrmUnit::retranslate() {
  SetCaption({"Unit", "単位系"});
  lblTitle_->setText(T(s_, {"Select Unit", "単位系を選んで下さい。"}));
  lblTemp_->setText(T(s_, {"Temperature", "温度単位系"}));
  lblPress_->setText(T(s_, {"Pressure", "圧力単位系"}));
  lblHeat_->setText(T(s_, {"Heat", "熱量単位系"}));
  // On open the lists show the stored selections minus one.
  auto fill = [&](QComboBox* box, int count, auto text, int selected) {
    box->clear();
    for (int u = 1; u <= count; ++u) box->addItem(text(s_, u));
    box->setCurrentIndex(selected - 1);
  };
  fill(cboTemp_, 3, TempUnitText, s_.Unit.TempUnit);
  fill(cboPress_, 6, PressUnitText, s_.Unit.PressUnit);
  fill(cboHeat_, 2, HeatUnitText, s_.Unit.HeatUnit);
  RetranslateOkCancel();
}

bool FrmUnit::Store() {
  s_.Unit.TempUnit = cboTemp_->currentIndex() + 1;
  s_.Unit.PressUnit = cboPress_->currentIndex() + 1;
  s_.Unit.HeatUnit = cboHeat_->currentIndex() + 1;
  if (MainFormLabels* host = ctx_.Host())
    host->ShowUnitLabels(cboTemp_->currentText(), cboPress_->currentText(),
                         cboHeat_->currentText());
  return true;
}

// ---------------------------------------------------------------- frmK_Value

FrmKValue::FrmKValue(ScreenContext& ctx, QWidget* parent) : SubForm(ctx, parent) {
  setObjectName(QStringLiteral("frmK_Value"));
  lblMethod_ = new QLabel(this);
  cboK_Value_ = new QComboBox(this);
  cboK_Value_->setObjectName(QStringLiteral("cboK_Value"));
  lblAntoine_ = new QLabel(this);
  const int nc = std::max(s_.NC, 1);
  vaSpreadAntoine_ = new CalcGrid(nc, 8, this);
  vaSpreadAntoine_->setObjectName(QStringLiteral("vaSpreadAntoine"));
  vaSpreadAntoine_->SetColumnReadOnly(1, true);
  vaSpreadAntoine_->setColumnWidth(0, 130);
  cmdDBAntoine_ = new QPushButton(this);
  cmdDBAntoine_->setObjectName(QStringLiteral("cmdDBAntoine"));
  fraWison_ = new QGroupBox(this);
  fraWison_->setObjectName(QStringLiteral("fraWison"));
  lblMatrix_ = new QLabel(fraWison_);
  vaSpreadWilson_ = new CalcGrid(nc, nc, fraWison_);
  vaSpreadWilson_->setObjectName(QStringLiteral("vaSpreadWilson"));
  lblAlpha_ = new QLabel(fraWison_);
  txtNRTLAlpha_ = new QLineEdit(fraWison_);
  txtNRTLAlpha_->setObjectName(QStringLiteral("txtNRTLAlpha"));
  txtNRTLAlpha_->setMaximumWidth(100);
  cmdDBWilson_ = new QPushButton(fraWison_);
  cmdDBWilson_->setObjectName(QStringLiteral("cmdDBWilson"));
  MakeOkCancel();

  auto* frameLayout = new QVBoxLayout(fraWison_);
  auto* top = new QHBoxLayout;
  top->addWidget(lblMatrix_);
  top->addStretch();
  top->addWidget(lblAlpha_);
  top->addWidget(txtNRTLAlpha_);
  top->addWidget(cmdDBWilson_);
  frameLayout->addLayout(top);
  frameLayout->addWidget(vaSpreadWilson_, 1);

  auto* methodRow = new QHBoxLayout;
  methodRow->addWidget(lblMethod_);
  methodRow->addWidget(cboK_Value_, 1);
  auto* antoineRow = new QHBoxLayout;
  antoineRow->addWidget(lblAntoine_);
  antoineRow->addStretch();
  antoineRow->addWidget(cmdDBAntoine_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(methodRow);
  layout->addLayout(antoineRow);
  layout->addWidget(vaSpreadAntoine_, 1);
  layout->addWidget(fraWison_, 1);
  layout->addLayout(OkCancelRow(cmdOK_, cmdCancel_));
  resize(820, 620);

  const auto& c = s_.Comp;
  for (int i = 1; i <= s_.NC; ++i) {
    const auto k = static_cast<size_t>(i);
    vaSpreadAntoine_->SetText(i, 1, Q(c.CompName[k]));
    vaSpreadAntoine_->SetNumber(i, 2, c.AntoineA[k]);
    vaSpreadAntoine_->SetNumber(i, 3, c.AntoineB[k]);
    vaSpreadAntoine_->SetNumber(i, 4, c.AntoineC[k]);
    vaSpreadAntoine_->SetNumber(i, 5, c.CompTc[k]);
    vaSpreadAntoine_->SetNumber(i, 6, c.CompPc[k]);
    vaSpreadAntoine_->SetNumber(i, 7, c.CompVc[k]);
    vaSpreadAntoine_->SetNumber(i, 8, c.CompOmega[k]);
  }
  vaSpreadWilson_->SetRowTitles(ComponentTitles(s_));
  vaSpreadWilson_->SetColumnTitles(ComponentTitles(s_));
  txtNRTLAlpha_->setText(Q(io::FormatShortest(s_.Bin.NrtlAlpha)));
  // Every change of alpha is stored at once.
  connect(txtNRTLAlpha_, &QLineEdit::textChanged, this, [this](const QString& t) {
    if (!loading_) s_.Bin.NrtlAlpha = ReadNumber(t);
  });
  connect(cboK_Value_, &QComboBox::currentIndexChanged, this, [this] {
    if (!loading_) ShowMatrix();
  });
  connect(cmdDBAntoine_, &QPushButton::clicked, this, &FrmKValue::LookUp);
  connect(cmdDBWilson_, &QPushButton::clicked, this, &FrmKValue::LookUp);
  retranslate();
  loading_ = false;
}

void FrmKValue::retranslate() {
  const bool wasLoading = loading_;
  loading_ = true;
  SetCaption({"Vapor-Liquid Equibrium", "気液平衡推算法"});
  lblMethod_->setText(T(s_, {"Method", "推算法"}));
  cboK_Value_->clear();
  for (int m = 1; m <= 5; ++m) cboK_Value_->addItem(KValueMethodText(s_, m));
  cboK_Value_->setCurrentIndex(std::clamp(s_.KValueMethod, 1, 5) - 1);
  lblAntoine_->setText(T(s_, {"Antoine Constants", "Ａｎｔｏｉｎｅ定数"}));
  vaSpreadAntoine_->SetColumnTitles(
      {T(s_, {"Name", "成分名"}), QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"),
       QStringLiteral("Tc"), QStringLiteral("Pc"), QStringLiteral("Vc"), QStringLiteral("omega")});
  cmdDBAntoine_->setText(T(s_, {"Querry Antoine(&S)", "Antoine定数検索(&S)"}));
  lblAlpha_->setText(QStringLiteral("α"));
  RetranslateOkCancel();
  ShowMatrix();
  loading_ = wasLoading;
}

void FrmKValue::ShowMatrix() {
  const int method = cboK_Value_->currentIndex() + 1;
  fraWison_->setVisible(method != 1);
  lblAlpha_->setVisible(method == 3);
  txtNRTLAlpha_->setVisible(method == 3);
  const CompMatrix* m = nullptr;
  if (method == 2) {
    lblMatrix_->setText(T(s_, {"Wilson Para(Λij)", "Wilsonﾊﾟﾗﾒｰﾀ(Λij)"}));
    cmdDBWilson_->setText(T(s_, {"Querry Wilson(&W)", "Wilson定数検索(&W)"}));
    m = &s_.Bin.WilsonLambda;
  } else if (method == 3) {
    lblMatrix_->setText(T(s_, {"N.R.T.L Para(τij)", "N.R.T.Lﾊﾟﾗﾒｰﾀ(τij)"}));
    cmdDBWilson_->setText(T(s_, {"Querry NRTL(&N)", "NRTL定数検索(&N)"}));
    m = &s_.Bin.NrtlTau;
  } else {
    lblMatrix_->setText(T(s_, {"Kij Para", "Kijﾊﾟﾗﾒｰﾀ"}));
    cmdDBWilson_->setText(T(s_, {"Querry Kij(&N)", "Kij 定数検索(&N)"}));
    m = &s_.Bin.KijMatrix;
  }
  vaSpreadWilson_->ClearCells();
  for (int i = 1; i <= s_.NC; ++i)
    for (int j = 1; j <= s_.NC; ++j)
      vaSpreadWilson_->SetNumber(i, j, (*m)[static_cast<size_t>(i)][static_cast<size_t>(j)]);
}

bool FrmKValue::Store() {
  const int method = cboK_Value_->currentIndex() + 1;
  s_.KValueMethod = method;
  if (MainFormLabels* host = ctx_.Host()) host->ShowKValueMethod(cboK_Value_->currentText());
  auto& c = s_.Comp;
  for (int i = 1; i <= s_.NC; ++i) {
    const auto k = static_cast<size_t>(i);
    c.AntoineA[k] = vaSpreadAntoine_->Number(i, 2);
    c.AntoineB[k] = vaSpreadAntoine_->Number(i, 3);
    c.AntoineC[k] = vaSpreadAntoine_->Number(i, 4);
    c.CompTc[k] = vaSpreadAntoine_->Number(i, 5);
    c.CompPc[k] = vaSpreadAntoine_->Number(i, 6);
    c.CompVc[k] = vaSpreadAntoine_->Number(i, 7);
    c.CompOmega[k] = vaSpreadAntoine_->Number(i, 8);
  }
  CompMatrix* m = nullptr;
  if (method == 2)
    m = &s_.Bin.WilsonLambda;
  else if (method == 3)
    m = &s_.Bin.NrtlTau;
  else if (method >= 4)
    m = &s_.Bin.KijMatrix;
  if (m)
    for (int i = 1; i <= s_.NC; ++i)
      for (int j = 1; j <= s_.NC; ++j)
        (*m)[static_cast<size_t>(i)][static_cast<size_t>(j)] = vaSpreadWilson_->Number(i, j);
  return true;
}

void FrmKValue::LookUp() {
  if (sender() == cmdDBAntoine_) {
    RunDatabaseLookup(ctx_, db::LookupKind::Antoine, vaSpreadAntoine_, this);
    return;
  }
  const int method = cboK_Value_->currentIndex() + 1;
  const db::LookupKind kind = method == 2   ? db::LookupKind::Wilson
                              : method == 3 ? db::LookupKind::Nrtl
                                            : db::LookupKind::Kij;
  RunDatabaseLookup(ctx_, kind, vaSpreadWilson_, this);
}

// ---------------------------------------------------------------- frmEnthalpy

FrmEnthalpy::FrmEnthalpy(ScreenContext& ctx, QWidget* parent) : SubForm(ctx, parent) {
  setObjectName(QStringLiteral("frmEnthalpy"));
  lblMethod_ = new QLabel(this);
  cboEnthalpy_ = new QComboBox(this);
  cboEnthalpy_->setObjectName(QStringLiteral("cboEnthalpy"));
  lblEquation_ = new QLabel(this);
  lblGroup1_ = new QLabel(this);
  lblGroup2_ = new QLabel(this);
  vaSpreadEnthalpy_ = new CalcGrid(std::max(s_.NC, 1), 7, this);
  vaSpreadEnthalpy_->setObjectName(QStringLiteral("vaSpreadEnthalpy"));
  vaSpreadEnthalpy_->setColumnWidth(0, 130);
  cmdDBEnthalpy_ = new QPushButton(this);
  cmdDBEnthalpy_->setObjectName(QStringLiteral("cmdDBEnthalpy"));
  connect(cmdDBEnthalpy_, &QPushButton::clicked, this, [this] {
    RunDatabaseLookup(ctx_, db::EnthalpyLookupKind(cboEnthalpy_->currentIndex()), vaSpreadEnthalpy_,
                      this);
  });
  MakeOkCancel();
  auto* methodRow = new QHBoxLayout;
  methodRow->addWidget(lblMethod_);
  methodRow->addWidget(cboEnthalpy_, 1);
  auto* groups = new QHBoxLayout;
  groups->addWidget(lblGroup1_, 1);
  groups->addWidget(lblGroup2_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(methodRow);
  layout->addWidget(lblEquation_);
  layout->addLayout(groups);
  layout->addWidget(vaSpreadEnthalpy_, 1);
  layout->addLayout(OkCancelRow(cmdOK_, cmdCancel_, cmdDBEnthalpy_));
  resize(820, 480);
  connect(cboEnthalpy_, &QComboBox::currentIndexChanged, this, &FrmEnthalpy::ShowLayout);
  retranslate();
}

void FrmEnthalpy::retranslate() {
  SetCaption({"Enthalpy Estimation Method", "エンタルピー推算法"});
  lblMethod_->setText(T(s_, {"Method", "推算法"}));
  {
    const QSignalBlocker block(cboEnthalpy_);
    cboEnthalpy_->clear();
    for (int m = 0; m <= 3; ++m) cboEnthalpy_->addItem(EnthalpyMethodText(s_, m));
    cboEnthalpy_->setCurrentIndex(std::clamp(s_.EnthalpyMethod, 0, 3));
  }
  cmdDBEnthalpy_->setText(T(s_, {"Querry Enthalpy(&S)", "Enthalpy係数検索(&S)"}));
  RetranslateOkCancel();
  ShowLayout();
}

void FrmEnthalpy::ShowLayout() {
  const int method = cboEnthalpy_->currentIndex();
  const bool shown = method > 0;
  vaSpreadEnthalpy_->setVisible(shown);
  lblEquation_->setVisible(shown);
  lblGroup1_->setVisible(shown);
  lblGroup2_->setVisible(method == 1);
  vaSpreadEnthalpy_->ClearCells();
  const QString name = T(s_, {"Name", "成分名"});
  const QString a = QStringLiteral("A"), b = QStringLiteral("B"), c = QStringLiteral("C");
  const auto& k = s_.Comp;
  QStringList rowTitles;
  for (int i = 1; i <= std::max(s_.NC, 1); ++i) rowTitles << QString::number(i);
  if (method == 1) {
    lblEquation_->setText(QStringLiteral("H(Kcal/Kgmol)=A + B*t + C*t^2     t:℃"));
    lblGroup1_->setText(T(s_, {"Vapor Enthalpy", "蒸気エンタルピー"}));
    lblGroup2_->setText(T(s_, {"Liquid Enthalpy", "液エンタルピー"}));
    vaSpreadEnthalpy_->setColumnCount(7);
    vaSpreadEnthalpy_->SetColumnTitles({name, a, b, c, a, b, c});
    for (int i = 1; i <= s_.NC; ++i) {
      const auto j = static_cast<size_t>(i);
      vaSpreadEnthalpy_->SetText(i, 1, Q(k.CompName[j]));
      vaSpreadEnthalpy_->SetNumber(i, 2, k.HVapA[j]);
      vaSpreadEnthalpy_->SetNumber(i, 3, k.HVapB[j]);
      vaSpreadEnthalpy_->SetNumber(i, 4, k.HVapC[j]);
      vaSpreadEnthalpy_->SetNumber(i, 5, k.HLiqA[j]);
      vaSpreadEnthalpy_->SetNumber(i, 6, k.HLiqB[j]);
      vaSpreadEnthalpy_->SetNumber(i, 7, k.HLiqC[j]);
    }
  } else {
    lblEquation_->setText(QStringLiteral("Cp(Kcal/KgmolK)=A + B*t + C*t^2 + D*t^3 t:K"));
    lblGroup1_->setText(QStringLiteral("Ideal Gas Capacity"));
    lblGroup2_->setText(QString());
    vaSpreadEnthalpy_->setColumnCount(5);
    vaSpreadEnthalpy_->SetColumnTitles({name, a, b, c, QStringLiteral("D")});
    for (int i = 1; i <= s_.NC; ++i) {
      const auto j = static_cast<size_t>(i);
      vaSpreadEnthalpy_->SetText(i, 1, Q(k.CompName[j]));
      vaSpreadEnthalpy_->SetNumber(i, 2, k.CpA[j]);
      vaSpreadEnthalpy_->SetNumber(i, 3, k.CpB[j]);
      vaSpreadEnthalpy_->SetNumber(i, 4, k.CpC[j]);
      vaSpreadEnthalpy_->SetNumber(i, 5, k.CpD[j]);
    }
  }
  vaSpreadEnthalpy_->SetRowTitles(rowTitles);
  vaSpreadEnthalpy_->SetColumnReadOnly(1, true);
}

bool FrmEnthalpy::Store() {
  const int method = cboEnthalpy_->currentIndex();
  s_.EnthalpyMethod = method;
  if (MainFormLabels* host = ctx_.Host()) host->ShowEnthalpyMethod(cboEnthalpy_->currentText());
  auto& k = s_.Comp;
  for (int i = 1; i <= s_.NC; ++i) {
    const auto j = static_cast<size_t>(i);
    if (method == 1) {
      k.HVapA[j] = vaSpreadEnthalpy_->Number(i, 2);
      k.HVapB[j] = vaSpreadEnthalpy_->Number(i, 3);
      k.HVapC[j] = vaSpreadEnthalpy_->Number(i, 4);
      k.HLiqA[j] = vaSpreadEnthalpy_->Number(i, 5);
      k.HLiqB[j] = vaSpreadEnthalpy_->Number(i, 6);
      k.HLiqC[j] = vaSpreadEnthalpy_->Number(i, 7);
    } else if (method >= 2) {
      k.CpA[j] = vaSpreadEnthalpy_->Number(i, 2);
      k.CpB[j] = vaSpreadEnthalpy_->Number(i, 3);
      k.CpC[j] = vaSpreadEnthalpy_->Number(i, 4);
      k.CpD[j] = vaSpreadEnthalpy_->Number(i, 5);
    }
  }
  return true;
}

}  // namespace tervale::screens
