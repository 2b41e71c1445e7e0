#include "screens/flash_forms.h"

#include <QButtonGroup>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <optional>

#include "io/record_writer.h"
#include "screens/shared_subforms.h"
#include "state/errors.h"

namespace tervale::screens {

namespace {

const QString kDataFilter = QStringLiteral("データ ファイル (*.dat)");

// Labels of the flash screen that the program shows in Japanese in both languages.
constexpr BiText kTempLabel = Same("温度");
constexpr BiText kTempLowLabel = Same("下限温度");
constexpr BiText kTempHighLabel = Same("上限温度");
constexpr BiText kPressLabel = Same("圧力");

QLabel* ValueLabel(QWidget* parent, const char* name) {
  auto* l = new QLabel(parent);
  l->setObjectName(QString::fromLatin1(name));
  l->setFrameShape(QFrame::StyledPanel);
  l->setMinimumWidth(60);
  l->setProperty("valueField", true);
  return l;
}

QPushButton* Button(QWidget* parent, const char* name) {
  auto* b = new QPushButton(parent);
  b->setObjectName(QString::fromLatin1(name));
  return b;
}

// A number box that is empty stays absent (the curve's limits take the computed points).
std::optional<double> OptionalNumber(const QLineEdit* box) {
  double v = 0;
  if (!ReadNumber(box->text(), v)) return std::nullopt;
  return v;
}

}  // namespace

// ---------------------------------------------------------------- frmFlash

FrmFlash::FrmFlash(ScreenContext& ctx, QWidget* parent) : MainForm(ctx, parent) {
  setObjectName(QStringLiteral("frmFlash"));
  ResetFlashCase(s_);  // BatchMode 2, TitlePrefix, the cleared case
  ctx_.hosts[2] = this;

  fraCalcType_ = new QGroupBox(this);
  fraCalcType_->setObjectName(QStringLiteral("fraCalcType"));
  auto* typeLayout = new QVBoxLayout(fraCalcType_);
  auto* typeGroup = new QButtonGroup(this);
  for (int i = 0; i < 6; ++i) {
    auto* o = new QRadioButton(fraCalcType_);
    o->setObjectName(QStringLiteral("optCalcType%1").arg(i));
    typeGroup->addButton(o, i);
    typeLayout->addWidget(o);
    optCalcType_[static_cast<size_t>(i)] = o;
  }
  connect(typeGroup, &QButtonGroup::idClicked, this, &FrmFlash::SelectCalcType);

  lblTemp_ = new QLabel(this);
  lblTemp_->setObjectName(QStringLiteral("lblTemp"));
  lblTemp2_ = new QLabel(this);
  lblTemp2_->setObjectName(QStringLiteral("lblTemp2"));
  lblPress_ = new QLabel(this);
  lblPress_->setObjectName(QStringLiteral("lblPress"));
  lblVF_ = new QLabel(QStringLiteral("V/F"), this);
  lblVF_->setObjectName(QStringLiteral("lblVF"));
  lblVFData_ = ValueLabel(this, "lblVFData");
  lblTempUnit_ = ValueLabel(this, "lblTempUnit");
  lblTemp2Unit_ = ValueLabel(this, "lblTemp2Unit");
  lblPressUnit_ = ValueLabel(this, "lblPressUnit");
  txtTemp_ = new QLineEdit(this);
  txtTemp_->setObjectName(QStringLiteral("txtTemp"));
  txtTemp2_ = new QLineEdit(this);
  txtTemp2_->setObjectName(QStringLiteral("txtTemp2"));
  txtPress_ = new QLineEdit(this);
  txtPress_->setObjectName(QStringLiteral("txtPress"));
  for (QLineEdit* e : {txtTemp_, txtTemp2_, txtPress_}) {
    e->setAlignment(Qt::AlignRight);
    e->setMaximumWidth(140);
  }

  lblNCCaption_ = new QLabel(this);
  lblNC_ = ValueLabel(this, "lblNC");
  lblKValueCaption_ = new QLabel(this);
  lblKValue_ = ValueLabel(this, "lblKValue");
  lblEnthalpyCaption_ = new QLabel(this);
  lblEnthalpy_ = ValueLabel(this, "lblEnthalpy");
  lblHeatCaption_ = new QLabel(this);
  lblHeatUnit_ = ValueLabel(this, "lblHeatUnit");
  lblFeed_ = new QLabel(this);
  lblResult_ = new QLabel(this);

  spdData_ = new CalcGrid(s_.MaxComponents, 3, this);
  spdData_->setObjectName(QStringLiteral("spdData"));
  spdData_->SetColumnReadOnly(1, true);
  spdData_->SetColumnReadOnly(2, true);
  spdData_->setColumnWidth(0, 140);
  // The feed composition is edited in the grid's third column.
  connect(spdData_, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
    if (filling_ || item->column() != 2) return;
    const int i = item->row() + 1;
    if (i >= 1 && i <= kMaxComponents)
      s_.Flash.FeedZ[static_cast<size_t>(i)] = ReadNumber(item->text());
  });
  spdData2_ = new CalcGrid(4, 1, this);
  spdData2_->setObjectName(QStringLiteral("spdData2"));
  spdData2_->setEditTriggers(QAbstractItemView::NoEditTriggers);

  cmdComponent_ = Button(this, "cmdComponent");
  cmdK_Value_ = Button(this, "cmdK_Value");
  cmdEnthalpy_ = Button(this, "cmdEnthalpy");
  cmdUnit_ = Button(this, "cmdUnit");
  cmdMemo_ = Button(this, "cmdMemo");
  cmdReadData_ = Button(this, "cmdReadData");
  cmdSaveData_ = Button(this, "cmdSaveData");
  cmdSample1_ = Button(this, "cmdSample1");
  cmdSample2_ = Button(this, "cmdSample2");
  cmdGoCalc_ = Button(this, "cmdGoCalc");
  cmdExit_ = Button(this, "cmdExit");
  QFont bold = cmdGoCalc_->font();
  bold.setBold(true);
  cmdGoCalc_->setFont(bold);
  cmdGoCalc_->setMinimumHeight(36);
  connect(cmdComponent_, &QPushButton::clicked, this, [this] { OpenSubForm(0); });
  connect(cmdK_Value_, &QPushButton::clicked, this, [this] { OpenSubForm(1); });
  connect(cmdEnthalpy_, &QPushButton::clicked, this, [this] { OpenSubForm(2); });
  connect(cmdUnit_, &QPushButton::clicked, this, [this] { OpenSubForm(3); });
  connect(cmdMemo_, &QPushButton::clicked, this, [this] { OpenSubForm(4); });
  connect(cmdReadData_, &QPushButton::clicked, this, &FrmFlash::ReadData);
  connect(cmdSaveData_, &QPushButton::clicked, this, &FrmFlash::SaveData);
  connect(cmdSample1_, &QPushButton::clicked, this, [this] { LoadExample(1); });
  connect(cmdSample2_, &QPushButton::clicked, this, [this] { LoadExample(2); });
  connect(cmdGoCalc_, &QPushButton::clicked, this, &FrmFlash::GoCalc);
  connect(cmdExit_, &QPushButton::clicked, this, &FrmFlash::ExitProgram);

  // Layout: case buttons on the left, conditions and summary in the middle, grids below.
  auto* caseButtons = new QVBoxLayout;
  for (QPushButton* b : {cmdComponent_, cmdK_Value_, cmdEnthalpy_, cmdUnit_, cmdMemo_})
    caseButtons->addWidget(b);
  caseButtons->addStretch();

  auto* conditions = new QGridLayout;
  conditions->addWidget(lblTemp_, 0, 0);
  conditions->addWidget(txtTemp_, 0, 1);
  conditions->addWidget(lblTempUnit_, 0, 2);
  conditions->addWidget(lblTemp2_, 1, 0);
  conditions->addWidget(txtTemp2_, 1, 1);
  conditions->addWidget(lblTemp2Unit_, 1, 2);
  conditions->addWidget(lblPress_, 2, 0);
  conditions->addWidget(txtPress_, 2, 1);
  conditions->addWidget(lblPressUnit_, 2, 2);
  conditions->addWidget(lblVF_, 3, 0);
  conditions->addWidget(lblVFData_, 3, 1);
  conditions->setRowStretch(4, 1);

  auto* summary = new QGridLayout;
  summary->addWidget(lblNCCaption_, 0, 0);
  summary->addWidget(lblNC_, 0, 1);
  summary->addWidget(lblKValueCaption_, 1, 0);
  summary->addWidget(lblKValue_, 1, 1);
  summary->addWidget(lblEnthalpyCaption_, 2, 0);
  summary->addWidget(lblEnthalpy_, 2, 1);
  summary->addWidget(lblHeatCaption_, 3, 0);
  summary->addWidget(lblHeatUnit_, 3, 1);
  summary->setColumnStretch(1, 1);
  summary->setRowStretch(4, 1);

  auto* top = new QHBoxLayout;
  top->addLayout(caseButtons);
  top->addWidget(fraCalcType_);
  top->addLayout(conditions);
  top->addLayout(summary, 1);

  auto* feedBox = new QVBoxLayout;
  feedBox->addWidget(lblFeed_);
  feedBox->addWidget(spdData_, 1);
  auto* resultBox = new QVBoxLayout;
  resultBox->addWidget(lblResult_);
  resultBox->addWidget(spdData2_, 1);
  auto* grids = new QHBoxLayout;
  grids->addLayout(feedBox, 2);
  grids->addLayout(resultBox, 3);

  auto* bottom = new QHBoxLayout;
  bottom->addWidget(cmdReadData_);
  bottom->addWidget(cmdSaveData_);
  bottom->addSpacing(16);
  bottom->addWidget(cmdSample1_);
  bottom->addWidget(cmdSample2_);
  bottom->addStretch();
  bottom->addWidget(cmdGoCalc_);
  bottom->addWidget(cmdExit_);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addLayout(grids, 1);
  layout->addLayout(bottom);
  resize(1080, 700);

  retranslate();
  Redisplay();
}

FrmFlash::~FrmFlash() {
  if (ctx_.hosts[2] == this) ctx_.hosts[2] = nullptr;
}

void FrmFlash::retranslate() {
  setWindowTitle(Q(s_.TitlePrefix));
  fraCalcType_->setTitle(T(s_, {"Calculation", "計算の種類"}));
  for (int i = 0; i < 6; ++i)
    optCalcType_[static_cast<size_t>(i)]->setText(Q(FlashCalcTypeCaption(i)));
  lblTemp2_->setText(T(s_, kTempHighLabel));
  lblPress_->setText(T(s_, kPressLabel));
  lblNCCaption_->setText(T(s_, {"Components", "成分数"}));
  lblKValueCaption_->setText(T(s_, {"Vapor-Liquid Equibrium", "気液平衡推算法"}));
  lblEnthalpyCaption_->setText(T(s_, {"Enthalpy Estimation Method", "エンタルピー推算法"}));
  lblHeatCaption_->setText(T(s_, {"Heat", "熱量単位系"}));
  lblFeed_->setText(T(s_, {"Feed", "フィード"}));
  lblResult_->setText(T(s_, {"Result", "計算結果"}));
  spdData_->SetColumnTitles(
      {T(s_, {"Name", "成分名"}), T(s_, {"Mol Wt", "分子量"}), T(s_, {"Feed z", "フィード組成"})});
  cmdComponent_->setText(T(s_, {"Component(&C)", "成分(&C)"}));
  cmdK_Value_->setText(T(s_, {"Vapor-Liquid Eq.(&K)", "気液平衡(&K)"}));
  cmdEnthalpy_->setText(T(s_, {"Enthalpy(&H)", "エンタルピー(&H)"}));
  cmdUnit_->setText(T(s_, {"Unit(&U)", "単位系(&U)"}));
  cmdMemo_->setText(T(s_, {"Memo(&M)", "メモ(&M)"}));
  cmdReadData_->setText(T(s_, {"Read Data(&R)", "データ読込(&R)"}));
  cmdSaveData_->setText(T(s_, {"Save Data(&S)", "データ保存(&S)"}));
  cmdSample1_->setText(T(s_, {"Example 1(&1)", "例題１(&1)"}));
  cmdSample2_->setText(T(s_, {"Example 2(&2)", "例題２(&2)"}));
  cmdGoCalc_->setText(T(s_, {"Calculate(&G)", "計算実行(&G)"}));
  cmdExit_->setText(T(s_, {"Exit(&X)", "終了(&X)"}));
  SelectCalcType(CalcType());
}

int FrmFlash::CalcType() const {
  return s_.Flash.CalcType;
}

void FrmFlash::SelectCalcType(int calcType) {
  if (calcType < 0 || calcType > 5) return;
  s_.Flash.CalcType = calcType;
  optCalcType_[static_cast<size_t>(calcType)]->setChecked(true);
  const bool curve = calcType == 5;
  lblTemp_->setText(T(s_, curve ? kTempLowLabel : kTempLabel));
  for (QWidget* w : std::initializer_list<QWidget*>{lblTemp2_, txtTemp2_, lblTemp2Unit_})
    w->setVisible(curve);
  lblVF_->setVisible(!curve);
  lblVFData_->setVisible(!curve);
}

void FrmFlash::ShowComponentCount(int nc) {
  lblNC_->setText(QString::number(nc));
}

void FrmFlash::ShowUnitLabels(const QString& temp, const QString& press, const QString& heat) {
  lblTempUnit_->setText(temp);
  lblTemp2Unit_->setText(temp);
  lblPressUnit_->setText(press);
  lblHeatUnit_->setText(heat);
}

void FrmFlash::ShowKValueMethod(const QString& text) {
  lblKValue_->setText(text);
}
void FrmFlash::ShowEnthalpyMethod(const QString& text) {
  lblEnthalpy_->setText(text);
}

void FrmFlash::RefreshComponents() {
  // Up to 20 rows, blanks below NC.
  filling_ = true;
  spdData_->ClearCells();
  QStringList rows;
  for (int i = 1; i <= spdData_->rowCount(); ++i) rows << QString::number(i);
  spdData_->SetRowTitles(rows);
  for (int i = 1; i <= s_.NC; ++i) {
    const auto k = static_cast<size_t>(i);
    spdData_->SetText(i, 1, Q(s_.Comp.CompName[k]));
    spdData_->SetNumber(i, 2, s_.Comp.CompMW[k]);
    spdData_->SetNumber(i, 3, s_.Flash.FeedZ[k]);
  }
  filling_ = false;
  ShowComponentCount(s_.NC);
  ClearResult();
}

void FrmFlash::Redisplay() {
  ShowUnitLabels(TempUnitText(s_, s_.Unit.TempUnit), PressUnitText(s_, s_.Unit.PressUnit),
                 HeatUnitText(s_, s_.Unit.HeatUnit));
  ShowKValueMethod(KValueMethodText(s_, s_.KValueMethod));
  ShowEnthalpyMethod(EnthalpyMethodText(s_, s_.EnthalpyMethod));
  txtTemp_->setText(Q(io::FormatShortest(s_.Flash.FlashTemp)));
  txtPress_->setText(Q(io::FormatShortest(s_.Flash.FlashPress)));
  txtTemp2_->clear();
  lblVFData_->clear();
  SelectCalcType(s_.Flash.CalcType);
  RefreshComponents();
}

void FrmFlash::ClearResult() {
  spdData2_->clear();
  spdData2_->setColumnCount(s_.NC + 1);
  spdData2_->setRowCount(4);
  QStringList columns;
  for (int i = 1; i <= s_.NC; ++i) columns << Q(s_.Comp.CompName[static_cast<size_t>(i)]);
  columns << T(s_, {"Enthalpy", "エンタルピー"});
  spdData2_->SetColumnTitles(columns);
  spdData2_->SetRowTitles({T(s_, {"Feed", "フィード"}), T(s_, {"Vapor", "蒸気"}),
                           T(s_, {"Liquid", "液"}), QStringLiteral("K")});
}

void FrmFlash::StoreBoxes() {
  s_.Flash.FlashTemp = ReadNumber(txtTemp_->text());
  s_.Flash.FlashPress = ReadNumber(txtPress_->text());
}

void FrmFlash::ShowResult(const FlashResult& r) {
  ClearResult();
  const int h = s_.NC + 1;  // the enthalpy column
  for (int i = 1; i <= s_.NC; ++i) {
    const auto k = static_cast<size_t>(i);
    spdData2_->SetNumber(1, i, s_.Flash.FeedZ[k], "#0.#00000");
    spdData2_->SetText(2, i, Q(r.yText[k]));
    spdData2_->SetText(3, i, Q(r.xText[k]));
    spdData2_->SetText(4, i, Q(r.kText[k]));
    for (int row = 2; row <= 4; ++row)
      spdData2_->item(row - 1, i - 1)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  if (r.hasEnthalpy) {
    spdData2_->SetText(1, h, Q(r.hFeedText));
    spdData2_->SetText(2, h, Q(r.hVapourText));
    spdData2_->SetText(3, h, Q(r.hLiquidText));
  }
  for (int row = 1; row <= 3; ++row)
    if (auto* it = spdData2_->item(row - 1, h - 1))
      it->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  spdData2_->resizeColumnsToContents();
}

void FrmFlash::GoCalc() {
  const int type = CalcType();
  StoreBoxes();
  if (type == 5) {
    // The curve runs at the pressure box rounded to its format; empty limits take the
    // computed bubble and dew points.
    QElapsedTimer timer;
    timer.start();
    const CondensingCurve curve = CalcCondensingCurve(
        s_, OptionalNumber(txtTemp_), OptionalNumber(txtTemp2_), s_.Flash.FlashPress);
    if (!curve.drawn) return;
    FrmFlashCondensingCurve form(ctx_, curve, this);
    qCInfo(lcTiming) << "condensing curve computed and drawn in" << timer.elapsed() << "ms";
    if (curveHook_) {
      curveHook_(form);
      return;
    }
    form.exec();
    return;
  }
  try {
    const FlashResult r = RunFlashCalculation(s_, type, s_.Flash.FlashTemp, s_.Flash.FlashPress);
    if (type == 0 || type == 1) txtTemp_->setText(Q(r.temperatureText));
    if (type == 2 || type == 3) txtPress_->setText(Q(r.pressureText));
    lblVFData_->setText(Q(r.vfText));
    ShowResult(r);
  } catch (const TervaleError& e) {
    ShowMessage(s_, e.what());
  }
}

void FrmFlash::ReadData() {
  if (!ctx_.files) return;
  const QString path = ctx_.files->OpenFileName(this, T(s_, {"Read Data", "データ読込"}),
                                                Q(s_.DataPath), kDataFilter);
  if (path.isEmpty()) return;
  const std::string name = S(QFileInfo(path).fileName());
  if (AskUser(s_, FlashReadQuestion(name), Buttons::YesNoCancel) != Answer::Yes) return;
  try {
    ReadFlashFile(s_, std::filesystem::path(S(path)));
  } catch (const InputRefused& e) {
    ShowMessage(s_, e.what());
  } catch (const TervaleError& e) {
    ShowMessage(s_, e.what());
  }
  Redisplay();
}

void FrmFlash::SaveData() {
  if (!ctx_.files) return;
  const QString path =
      ctx_.files->SaveFileName(this, T(s_, {"Save Data", "データ保存"}), Q(s_.DataPath), QString(),
                               QStringLiteral("dat"), kDataFilter);
  if (path.isEmpty()) return;
  const std::string name = S(QFileInfo(path).fileName());
  if (AskUser(s_, FlashSaveQuestion(name), Buttons::YesNoCancel) != Answer::Yes) return;
  if (QFileInfo::exists(path) &&
      AskUser(s_, FlashOverwriteQuestion(name), Buttons::YesNoCancel) != Answer::Yes)
    return;
  StoreBoxes();
  try {
    WriteFlashFile(s_, std::filesystem::path(S(path)));
  } catch (const TervaleError& e) {
    ShowMessage(s_, e.what());
  }
}

void FrmFlash::LoadExample(int number) {
  LoadFlashExample(s_, number);
  Redisplay();
}

void FrmFlash::OpenSubForm(int which) {
  StoreBoxes();
  std::unique_ptr<SubForm> form;
  switch (which) {
    case 0:
      form = std::make_unique<FrmComponent>(ctx_, this);
      break;
    case 1:
      form = std::make_unique<FrmKValue>(ctx_, this);
      break;
    case 2:
      form = std::make_unique<FrmEnthalpy>(ctx_, this);
      break;
    case 3:
      form = std::make_unique<FrmUnit>(ctx_, this);
      break;
    default:
      form = std::make_unique<FrmMemo>(ctx_, this);
      break;
  }
  form->exec();
  if (which == 0) RefreshComponents();
}

// ---------------------------------------------------------------- frmFlashCondensingCurve

FrmFlashCondensingCurve::FrmFlashCondensingCurve(ScreenContext& ctx, const CondensingCurve& curve,
                                                 QWidget* parent)
    : SubForm(ctx, parent), curve_(curve) {
  setObjectName(QStringLiteral("frmFlashCondensingCurve"));
  lblTitle_ = new QLabel(this);
  QFont f = lblTitle_->font();
  f.setPointSizeF(f.pointSizeF() * 1.3);
  f.setBold(true);
  lblTitle_->setFont(f);
  lblPress_ = new QLabel(this);
  lblPress_->setObjectName(QStringLiteral("lblPress"));
  picCalc_ = new ChartPanel(this);
  picCalc_->setObjectName(QStringLiteral("picCalc"));
  spdData_ = new CalcGrid(std::max(s_.NC, 1), 5, this);
  spdData_->setObjectName(QStringLiteral("spdData"));
  spdData_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  lblX_ = new QLabel(this);
  lblY_ = new QLabel(QStringLiteral("V/F"), this);
  txtX_ = new QLineEdit(this);
  txtX_->setObjectName(QStringLiteral("txtX"));
  txtX_->setReadOnly(true);
  txtY_ = new QLineEdit(this);
  txtY_->setObjectName(QStringLiteral("txtY"));
  txtY_->setReadOnly(true);
  for (QLineEdit* e : {txtX_, txtY_}) {
    e->setAlignment(Qt::AlignRight);
    e->setMaximumWidth(120);
  }
  cmdExit_ = new QPushButton(this);
  cmdExit_->setObjectName(QStringLiteral("cmdExit"));
  cmdExit_->setAutoDefault(false);
  connect(cmdExit_, &QPushButton::clicked, this, &FrmFlashCondensingCurve::reject);
  connect(picCalc_, &ChartPanel::pointClicked, this, [this](double, double fraction) {
    // The column of the click gives the point.
    ShowPoint(static_cast<int>(std::lround(fraction * (kCurvePoints - 1))) + 1);
  });

  auto* readout = new QHBoxLayout;
  readout->addWidget(lblX_);
  readout->addWidget(txtX_);
  readout->addWidget(lblY_);
  readout->addWidget(txtY_);
  readout->addStretch();
  readout->addWidget(cmdExit_);
  auto* head = new QHBoxLayout;
  head->addWidget(lblTitle_);
  head->addStretch();
  head->addWidget(lblPress_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(head);
  layout->addWidget(picCalc_, 3);
  layout->addWidget(spdData_, 1);
  layout->addLayout(readout);
  resize(900, 720);
  retranslate();
  Draw();
}

void FrmFlashCondensingCurve::retranslate() {
  setWindowTitle(T(s_, {"Flash Calculation Condensing Curve", "ＦＬＡＳＨ計算 凝縮曲線"}));
  lblTitle_->setText(QStringLiteral("凝縮曲線"));
  lblPress_->setText(QStringLiteral("Press ") + Fmt(curve_.pressure, " ###0.000").trimmed() +
                     QStringLiteral(" ") + PressUnitText(s_, s_.Unit.PressUnit));
  lblX_->setText(QStringLiteral("Temp"));
  cmdExit_->setText(T(s_, {"Exit(&X)", "終了(&X)"}));
  spdData_->SetColumnTitles({T(s_, {"Name", "成分名"}), QStringLiteral("z"), QStringLiteral("y"),
                             QStringLiteral("x"), QStringLiteral("K")});
  picCalc_->SetMenuTexts(T(s_, {"Save picture as PNG...", "PNG で保存..."}),
                         T(s_, {"Save picture as SVG...", "SVG で保存..."}));
}

void FrmFlashCondensingCurve::Draw() {
  const QString tUnit = TempUnitText(s_, s_.Unit.TempUnit);
  picCalc_->SetXAxis(ChartAxis{QStringLiteral("Temp [") + tUnit + QStringLiteral("]"), curve_.tLow,
                               curve_.tHigh, false, 10, " ###0.000"});
  picCalc_->SetLeftAxis(ChartAxis{QStringLiteral("V/F"), 0.0, 1.0, false, 10, " 0.0"});
  std::vector<double> t(curve_.t.begin() + 1, curve_.t.end());
  std::vector<double> vf(curve_.vf.begin() + 1, curve_.vf.end());
  picCalc_->SetSeries(QStringLiteral("V/F"), QColor(0, 70, 200), Scale::Left, t, vf);
  if (curve_.hasEnthalpy) {
    std::vector<double> h(curve_.h.begin() + 1, curve_.h.end());
    double lo = curve_.hBubble, hi = curve_.hDew;
    if (lo > hi) std::swap(lo, hi);
    if (!(hi > lo)) {
      lo = *std::min_element(h.begin(), h.end());
      hi = *std::max_element(h.begin(), h.end());
      if (!(hi > lo)) hi = lo + 1;
    }
    picCalc_->SetRightAxis(ChartAxis{QStringLiteral("Enthalpy [") +
                                         HeatUnitText(s_, s_.Unit.HeatUnit) +
                                         QStringLiteral("/Kgmol]"),
                                     lo, hi, false, 10, "#.###E+##"});
    picCalc_->SetSeries(QStringLiteral("Enthalpy"), QColor(200, 40, 40), Scale::Right, t, h);
  }
  // Bubble and dew points as vertical marks where they lie within the limits.
  // In the unit of the limits, which take these points when left empty.
  const double bubble = curve_.bubbleT;
  const double dew = curve_.dewT;
  if (bubble >= curve_.tLow && bubble <= curve_.tHigh)
    picCalc_->AddVerticalMark(bubble,
                              T(s_, {"Bubble ", "沸点 "}) + Fmt(bubble, " ###0.000").trimmed(),
                              QColor(0, 140, 0));
  if (dew >= curve_.tLow && dew <= curve_.tHigh)
    picCalc_->AddVerticalMark(dew, T(s_, {"Dew ", "露点 "}) + Fmt(dew, " ###0.000").trimmed(),
                              QColor(150, 0, 150));
}

void FrmFlashCondensingCurve::ShowPoint(int index) {
  QElapsedTimer timer;
  timer.start();
  const CurvePoint p = CurvePointDetail(s_, curve_, index);
  for (int i = 1; i <= s_.NC; ++i) {
    const auto k = static_cast<size_t>(i);
    spdData_->SetText(i, 1, Q(s_.Comp.CompName[k]));
    spdData_->SetText(i, 2, Q(p.zText[k]));
    spdData_->SetText(i, 3, Q(p.yText[k]));
    spdData_->SetText(i, 4, Q(p.xText[k]));
    spdData_->SetText(i, 5, Q(p.kText[k]));
    for (int c = 2; c <= 5; ++c)
      spdData_->item(i - 1, c - 1)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  spdData_->resizeColumnsToContents();
  txtX_->setText(Q(p.tText));
  txtY_->setText(Q(p.vfText));
  qCInfo(lcTiming) << "curve point" << index << "read out in" << timer.nsecsElapsed() / 1000
                   << "us";
}

}  // namespace tervale::screens
