#include "shell/desktop_app.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

#include "screens/program_forms.h"
#include "shell/start_sequence.h"

namespace tervale::shell {

DesktopApp::DesktopApp(QSettings& settings, const QString& applicationFolder)
    : state_(MakeSharedCalcState()), ctx_(*state_) {
  RunStartSequence(*state_, settings, applicationFolder);
  ctx_.files = &files_;
  dialogs_ = std::make_unique<screens::QtUserDialogs>();
  state_->Dialogs = dialogs_.get();
  menu_ = std::make_unique<FrmMenu>(ctx_, settings);
  dialogs_->SetWindow(menu_.get());
  for (auto& [n, factory] : screens::ProgramForms()) menu_->SetProgramFactory(n, factory);
  QObject::connect(menu_.get(), &FrmMenu::languageChanged,
                   [this](int flag) { ApplyQtLanguage(flag); });
  ApplyQtLanguage(state_->LanguageFlag);
}

DesktopApp::~DesktopApp() {
  if (translatorInstalled_) QCoreApplication::removeTranslator(&qtTranslator_);
  state_->Dialogs = nullptr;
}

void DesktopApp::ApplyQtLanguage(int languageFlag) {
  if (translatorInstalled_) {
    QCoreApplication::removeTranslator(&qtTranslator_);
    translatorInstalled_ = false;
  }
  if (languageFlag == 0 && qtTranslator_.load(QStringLiteral("qtbase_ja"),
                                              QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    translatorInstalled_ = QCoreApplication::installTranslator(&qtTranslator_);
}

namespace {

bool SaveShot(QWidget* w, const QString& folder, int& failures) {
  w->show();
  for (int i = 0; i < 3; ++i) QApplication::processEvents();
  const QSize size = w->size().expandedTo(QSize(400, 300));
  if (w->size() != size) {
    w->resize(size);
    QApplication::processEvents();
  }
  const QString path = QDir(folder).filePath(w->objectName() + QStringLiteral(".png"));
  const bool ok = w->grab().save(path, "PNG");
  if (!ok) {
    std::fprintf(stderr, "cannot write %s\n", path.toLocal8Bit().constData());
    ++failures;
  } else {
    std::fprintf(stderr, "%s\n", path.toLocal8Bit().constData());
  }
  w->hide();
  return ok;
}

}  // namespace

int WriteScreenshots(const QString& dir) {
  int failures = 0;
  QTemporaryDir scratch;
  for (int lang : {1, 0}) {
    const QString folder =
        QDir(dir).filePath(lang == 1 ? QStringLiteral("en") : QStringLiteral("ja"));
    QDir().mkpath(folder);
    QSettings settings(QDir(scratch.path()).filePath(QStringLiteral("settings.ini")),
                       QSettings::IniFormat);
    DesktopApp app(settings, QApplication::applicationDirPath());
    app.Menu().SetLanguage(lang);
    // Messages during the shots are not shown.
    app.Dialogs().SetPresenter([](const QString&, Buttons b, bool) { return DefaultAnswer(b); });
    SaveShot(&app.Menu(), folder, failures);
    for (auto& make : screens::ScreenshotMakers(app.Context())) {
      std::unique_ptr<QWidget> w = make();
      SaveShot(w.get(), folder, failures);
    }
  }
  return failures;
}

}  // namespace tervale::shell
