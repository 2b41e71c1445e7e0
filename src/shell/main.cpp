// tervale: the desktop program. Starts with the calculation menu in Japanese.
#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>
#include <cstdio>

#include "screens/screen_text.h"
#include "shell/desktop_app.h"
#include "shell/start_sequence.h"

int main(int argc, char** argv) {
  using namespace tervale;
  QElapsedTimer sinceStart;
  sinceStart.start();
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Tervale"));
  QApplication::setOrganizationName(QStringLiteral("Tervale"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tervale"));

  const QStringList args = QApplication::arguments();
  const qsizetype shot = args.indexOf(QStringLiteral("--screenshot"));
  if (shot >= 0) {
    if (shot + 1 >= args.size()) {
      std::fputs("usage: tervale --screenshot DIR\n", stderr);
      return 2;
    }
    return shell::WriteScreenshots(args[shot + 1]) == 0 ? 0 : 1;
  }

  if (!shell::PlatformSupported()) {
    QMessageBox::critical(nullptr, QApplication::applicationDisplayName(),
                          screens::Q(shell::kPlatformRefused.ja));
    return 1;
  }
  auto lock = shell::AcquireSingleInstance();
  if (!lock) {
    QMessageBox::warning(nullptr, QApplication::applicationDisplayName(),
                         screens::Q(shell::kSecondInstance.ja));
    return 1;
  }

  auto settings = shell::OpenUserSettings();
  shell::DesktopApp desktop(*settings, QApplication::applicationDirPath());
  QObject::connect(&desktop.Menu(), &shell::FrmMenu::exitRequested, &app,
                   [] { QApplication::exit(0); });
  desktop.Menu().show();
  QTimer::singleShot(0, &app, [&sinceStart] {
    qCInfo(screens::lcTiming) << "menu shown" << sinceStart.elapsed() << "ms after start";
  });
  return QApplication::exec();
}
