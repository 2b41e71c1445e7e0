#pragma once
// The calculation menu: nine program buttons, the data folder, the language, exit.
#include <QPointer>
#include <QWidget>
#include <array>
#include <functional>

#include "screens/screen_context.h"
#include "screens/sub_form.h"

class QLabel;
class QPushButton;
class QRadioButton;
class QSettings;

namespace tervale::shell {

class FrmMenu : public QWidget {
  Q_OBJECT
 public:
  using ProgramFactory = std::function<screens::MainForm*(screens::ScreenContext&)>;
  static constexpr int kPrograms = 9;

  FrmMenu(screens::ScreenContext& ctx, QSettings& settings, QWidget* parent = nullptr);

  // The main form of program number (ActiveProgram) n; programs without one say they are
  // not yet available.
  void SetProgramFactory(int n, ProgramFactory factory);
  void retranslate();

  QPushButton* ProgramButton(int n) const { return programButtons_[static_cast<size_t>(n)]; }
  QLabel* DataDirLabel() const { return lblDataDir_; }
  screens::MainForm* OpenProgram() const { return openProgram_.data(); }

 public slots:
  void StartProgram(int n);
  void ChangeDataDirectory();  // cmdDataDir
  void ReturnToMyDocuments();  // cmdMyDocuments
  void SetLanguage(int flag);  // optLanguage
  void ShowAbout();

 signals:
  void exitRequested();  // cmdExit: end the process at once
  void languageChanged(int flag);

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  screens::ScreenContext& ctx_;
  SharedCalcState& s_;
  QSettings& settings_;
  QLabel* lblTitle_;
  QLabel* lblDataDir_;
  QLabel* lblDataDirCaption_;
  QLabel* lblVersion_;
  QLabel* lblLanguage_;
  std::array<QPushButton*, kPrograms> programButtons_{};
  std::array<ProgramFactory, kPrograms> factories_{};
  QPushButton* cmdDataDir_;
  QPushButton* cmdMyDocuments_;
  QPushButton* cmdExit_;
  QPushButton* cmdAbout_;
  std::array<QRadioButton*, 2> optLanguage_{};
  QPointer<screens::MainForm> openProgram_;
};

}  // namespace tervale::shell
