#include "shell/frm_menu.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QDir>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QVBoxLayout>

#include "screens/screen_text.h"
#include "shell/start_sequence.h"

namespace tervale::shell {

using screens::Q;
using screens::T;

namespace {

struct ProgramCaption {
  const char* name;
  BiText caption;
};

constexpr ProgramCaption kProgramButtons[FrmMenu::kPrograms] = {
    {"cmdDistillation", {"Step by Step Distillation (&1)", "逐次段蒸留計算 (&1)"}},
    {"cmdBatchDistillation", {"Batch Distillation (&2)", "バッチ蒸留計算 (&2)"}},
    {"cmdFlashCalculation", {"Flash Calculation (&3)", "フラッシュ計算 (&3)"}},
    {"cmdVaporPress", {"Antoine's Constants Estimation (&4)", "Ａｎｔｏｉｎｅ定数推算(&4)"}},
    {"cmdVLE_Estimation", {"Wilson/NRTL Parameter Estimation (&5)", "Wilson/N.R.T.L.定数推算(&5)"}},
    {"cmdUNIFAC", {"U N I F A C (&6)", "Ｕ Ｎ Ｉ Ｆ Ａ Ｃ (&6)"}},
    {"cmdPhycalProperty", {"Physical Property Estimation (&7)", "純物質の物性定数推算(&7)"}},
    {"cmdDBMentenance", {"Physical Property Database (&8)", "物性定数データベース(&8)"}},
    {"cmdDBMentenance2", {"Interraction Parameter (&9)", "２成分パラメータデータベース(&9)"}},
};

constexpr BiText kTitle{"[Tervale Program]", "【Tervaleプログラム】"};
constexpr BiText kWindowTitle{"Tervale Program", "Tervaleプログラム"};
constexpr BiText kExit{"E x i t (&X)", "終  了 (&X)"};
constexpr BiText kDataDir{"Change Data Directory(&D)", "データフォルダ変更(&D)"};
constexpr BiText kMyDocuments{"My Documents(&M)", "マイドキュメント(&M)"};
constexpr BiText kDataDirCaption{"Data folder:", "データフォルダ:"};
constexpr BiText kLanguage{"Language:", "言語:"};
constexpr BiText kAbout{"About(&A)", "バージョン情報(&A)"};
constexpr BiText kAboutTitle{"About Tervale", "Tervaleについて"};
constexpr BiText kNotYet{"This program is not available yet.",
                         "このプログラムはまだ使用できません。"};
constexpr BiText kHistory{
    "Vapour-liquid equilibrium and distillation calculations.\n\n"
    "History\n"
    "  Ver.05.1010  Flash calculation with condensing curve on the Linux desktop;\n"
    "               the command line runs every program without a screen.",
    "気液平衡・蒸留計算プログラム\n\n"
    "履歴\n"
    "  Ver.05.1010  Linux デスクトップ版 フラッシュ計算・凝縮曲線\n"
    "               全プログラムをコマンドラインからも実行可能"};
const QString kDataFilter = QStringLiteral("データ ファイル (*.dat)");

}  // namespace

FrmMenu::FrmMenu(screens::ScreenContext& ctx, QSettings& settings, QWidget* parent)
    : QWidget(parent), ctx_(ctx), s_(ctx.s), settings_(settings) {
  setObjectName(QStringLiteral("frmMenu"));

  lblTitle_ = new QLabel(this);
  lblTitle_->setObjectName(QStringLiteral("lblTitle"));
  lblTitle_->setAlignment(Qt::AlignCenter);
  QFont tf = lblTitle_->font();
  tf.setPointSizeF(tf.pointSizeF() * 1.8);
  tf.setBold(true);
  lblTitle_->setFont(tf);

  auto* buttons = new QGridLayout;
  for (int n = 0; n < kPrograms; ++n) {
    auto* b = new QPushButton(this);
    b->setObjectName(QString::fromLatin1(kProgramButtons[n].name));
    b->setMinimumHeight(40);
    connect(b, &QPushButton::clicked, this, [this, n] { StartProgram(n); });
    programButtons_[static_cast<size_t>(n)] = b;
    buttons->addWidget(b, n, 0);
  }

  lblDataDirCaption_ = new QLabel(this);
  lblDataDir_ = new QLabel(this);
  lblDataDir_->setObjectName(QStringLiteral("lblDataDir"));
  lblDataDir_->setProperty("valueField", true);
  lblDataDir_->setFrameShape(QFrame::StyledPanel);
  lblDataDir_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lblDataDir_->setMinimumWidth(360);
  cmdDataDir_ = new QPushButton(this);
  cmdDataDir_->setObjectName(QStringLiteral("cmdDataDir"));
  cmdMyDocuments_ = new QPushButton(this);
  cmdMyDocuments_->setObjectName(QStringLiteral("cmdMyDocuments"));
  connect(cmdDataDir_, &QPushButton::clicked, this, &FrmMenu::ChangeDataDirectory);
  connect(cmdMyDocuments_, &QPushButton::clicked, this, &FrmMenu::ReturnToMyDocuments);

  lblLanguage_ = new QLabel(this);
  auto* group = new QButtonGroup(this);
  for (int i = 0; i < 2; ++i) {
    optLanguage_[static_cast<size_t>(i)] = new QRadioButton(this);
    optLanguage_[static_cast<size_t>(i)]->setObjectName(QStringLiteral("optLanguage%1").arg(i));
    group->addButton(optLanguage_[static_cast<size_t>(i)], i);
  }
  optLanguage_[0]->setText(QStringLiteral("日本語"));
  optLanguage_[1]->setText(QStringLiteral("English"));
  connect(group, &QButtonGroup::idClicked, this, &FrmMenu::SetLanguage);

  lblVersion_ = new QLabel(Q(kVersionText), this);
  lblVersion_->setObjectName(QStringLiteral("lblVersion"));
  lblVersion_->setCursor(Qt::PointingHandCursor);
  lblVersion_->installEventFilter(this);
  cmdAbout_ = new QPushButton(this);
  cmdAbout_->setObjectName(QStringLiteral("cmdAbout"));
  connect(cmdAbout_, &QPushButton::clicked, this, &FrmMenu::ShowAbout);
  cmdExit_ = new QPushButton(this);
  cmdExit_->setObjectName(QStringLiteral("cmdExit"));
  cmdExit_->setMinimumHeight(36);
  connect(cmdExit_, &QPushButton::clicked, this, &FrmMenu::exitRequested);

  auto* dataRow = new QHBoxLayout;
  dataRow->addWidget(lblDataDirCaption_);
  dataRow->addWidget(lblDataDir_, 1);
  auto* dataButtons = new QHBoxLayout;
  dataButtons->addWidget(cmdDataDir_);
  dataButtons->addWidget(cmdMyDocuments_);
  dataButtons->addStretch();
  auto* langRow = new QHBoxLayout;
  langRow->addWidget(lblLanguage_);
  langRow->addWidget(optLanguage_[0]);
  langRow->addWidget(optLanguage_[1]);
  langRow->addStretch();
  langRow->addWidget(lblVersion_);
  langRow->addWidget(cmdAbout_);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 18, 24, 18);
  layout->addWidget(lblTitle_);
  layout->addSpacing(10);
  layout->addLayout(buttons);
  layout->addSpacing(10);
  layout->addLayout(dataRow);
  layout->addLayout(dataButtons);
  layout->addLayout(langRow);
  layout->addSpacing(6);
  layout->addWidget(cmdExit_);

  optLanguage_[static_cast<size_t>(s_.LanguageFlag == 1 ? 1 : 0)]->setChecked(true);
  lblDataDir_->setText(Q(s_.DataPath));
  retranslate();
  resize(520, 620);
}

void FrmMenu::SetProgramFactory(int n, ProgramFactory factory) {
  if (n >= 0 && n < kPrograms) factories_[static_cast<size_t>(n)] = std::move(factory);
}

void FrmMenu::retranslate() {
  setWindowTitle(T(s_, kWindowTitle));
  lblTitle_->setText(T(s_, kTitle));
  for (int n = 0; n < kPrograms; ++n)
    programButtons_[static_cast<size_t>(n)]->setText(T(s_, kProgramButtons[n].caption));
  cmdExit_->setText(T(s_, kExit));
  cmdDataDir_->setText(T(s_, kDataDir));
  cmdMyDocuments_->setText(T(s_, kMyDocuments));
  lblDataDirCaption_->setText(T(s_, kDataDirCaption));
  lblLanguage_->setText(T(s_, kLanguage));
  cmdAbout_->setText(T(s_, kAbout));
  lblVersion_->setText(Q(kVersionText));
}

void FrmMenu::StartProgram(int n) {
  if (n < 0 || n >= kPrograms) return;
  s_.ActiveProgram = n;
  if (n == 0) s_.BatchMode = 0;
  if (n == 1) s_.BatchMode = 1;
  const ProgramFactory& factory = factories_[static_cast<size_t>(n)];
  if (!factory) {
    ShowMessage(s_, kNotYet);
    return;
  }
  if (!openProgram_) {
    openProgram_ = factory(ctx_);
    if (!openProgram_) return;
    connect(openProgram_.data(), &screens::MainForm::exited, this, [this] {
      openProgram_.clear();
      show();
      raise();
      activateWindow();
    });
  }
  openProgram_->show();
  openProgram_->raise();
  hide();
}

void FrmMenu::ChangeDataDirectory() {
  if (!ctx_.files) return;
  const QString chosen =
      ctx_.files->SaveFileName(this, T(s_, kDataDir), Q(s_.DataPath), QStringLiteral("Dummy"),
                               QStringLiteral("dat"), kDataFilter);
  if (chosen.isEmpty()) return;
  if (chosen == QStringLiteral("Dummy")) return;
  const QString folder = FolderOfChosenName(chosen);
  if (folder.isEmpty()) return;
  s_.DataPath = screens::S(folder);
  lblDataDir_->setText(folder);
  WriteStartupPath(settings_, folder);
}

void FrmMenu::ReturnToMyDocuments() {
  const QString docs = DocumentsFolder();
  s_.DataPath = screens::S(docs);
  lblDataDir_->setText(docs);
}

void FrmMenu::SetLanguage(int flag) {
  s_.LanguageFlag = flag == 1 ? 1 : 0;
  optLanguage_[static_cast<size_t>(s_.LanguageFlag)]->setChecked(true);
  retranslate();
  emit languageChanged(s_.LanguageFlag);
}

void FrmMenu::ShowAbout() {
  QMessageBox box(QMessageBox::Information, T(s_, kAboutTitle),
                  T(s_, kWindowTitle) + QStringLiteral("  ") + Q(kVersionText), QMessageBox::Ok,
                  this);
  box.setInformativeText(T(s_, kHistory));
  box.setObjectName(QStringLiteral("frmAbout"));
  box.exec();
}

bool FrmMenu::eventFilter(QObject* watched, QEvent* event) {
  if (watched == lblVersion_ && event->type() == QEvent::MouseButtonRelease) {
    ShowAbout();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void FrmMenu::closeEvent(QCloseEvent* event) {
  // The menu's close box ends the program as its exit button does.
  event->accept();
  emit exitRequested();
}

}  // namespace tervale::shell
