// The menu and its start sequence.
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include "screen_test_support.h"
#include "shell/frm_menu.h"
#include "shell/start_sequence.h"

using namespace tervale;
using namespace tervale::screens;
using namespace tervale::screens::testing;
using namespace tervale::shell;

class ShellTest : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir dir_;
  QString Ini(const QString& name) const { return QDir(dir_.path()).filePath(name); }
  static void Touch(const QString& path) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
  }

 private slots:
  void emptySettingTakesTheDocumentsFolder() {
    Bench b;
    b.s.LanguageFlag = 1;
    QSettings settings(Ini(QStringLiteral("empty.ini")), QSettings::IniFormat);
    RunStartSequence(b.s, settings, dir_.path());
    QCOMPARE(Q(b.s.DataPath), DocumentsFolder());
    QCOMPARE(b.s.LanguageFlag, 0);  // the program starts in Japanese
  }

  void existingSettingIsShownUnchangedWhateverItsCase() {
    {
      QSettings w(Ini(QStringLiteral("set.ini")), QSettings::IniFormat);
      w.setValue(QStringLiteral("STARTUP/path"), QStringLiteral("/no/such/folder"));
    }
    Bench b;
    QSettings settings(Ini(QStringLiteral("set.ini")), QSettings::IniFormat);
    RunStartSequence(b.s, settings, dir_.path());
    QCOMPARE(Q(b.s.DataPath), QStringLiteral("/no/such/folder"));
    // The write goes to the same section, so the next start reads the new folder.
    WriteStartupPath(settings, QStringLiteral("/data/two"));
    QCOMPARE(ReadStartupPath(settings), QStringLiteral("/data/two"));
    QCOMPARE(settings.childGroups(), QStringList{QStringLiteral("STARTUP")});
  }

  void databaseFileBesideTheProgram() {
    QTemporaryDir app;
    // Neither file: the .mde is named all the same.
    QCOMPARE(ResolveDatabaseFile(app.path()),
             QDir(app.path()).filePath(QStringLiteral("Masterd$.mde")));
    Touch(QDir(app.path()).filePath(QStringLiteral("Masterd$.mde")));
    QCOMPARE(ResolveDatabaseFile(app.path()),
             QDir(app.path()).filePath(QStringLiteral("Masterd$.mde")));
    Touch(QDir(app.path()).filePath(QStringLiteral("Masterd$.mdb")));
    QCOMPARE(ResolveDatabaseFile(app.path()),
             QDir(app.path()).filePath(QStringLiteral("Masterd$.mdb")));
    Bench b;
    QSettings settings(Ini(QStringLiteral("db.ini")), QSettings::IniFormat);
    RunStartSequence(b.s, settings, app.path());
    QVERIFY(Q(b.s.DatabaseFile).endsWith(QStringLiteral("Masterd$.mdb")));
  }

  void dataFolderDialog() {
    Bench b;
    b.s.DataPath = "/start/folder";
    QSettings settings(Ini(QStringLiteral("dlg.ini")), QSettings::IniFormat);
    FrmMenu menu(b.ctx, settings);
    // Cancel: nothing changes, nothing is written.
    b.files.answer.clear();
    menu.findChild<QPushButton*>(QStringLiteral("cmdDataDir"))->click();
    QCOMPARE(b.files.asked, 1);
    QCOMPARE(b.files.lastFolder, QStringLiteral("/start/folder"));
    QCOMPARE(b.s.DataPath, std::string("/start/folder"));
    QCOMPARE(menu.DataDirLabel()->text(), QStringLiteral("/start/folder"));
    QVERIFY(ReadStartupPath(settings).isEmpty());
    // A chosen name: its folder becomes the data folder and the setting.
    b.files.answer = QStringLiteral("/home/user/cases/Dummy.dat");
    menu.findChild<QPushButton*>(QStringLiteral("cmdDataDir"))->click();
    QCOMPARE(b.s.DataPath, std::string("/home/user/cases"));
    QCOMPARE(menu.DataDirLabel()->text(), QStringLiteral("/home/user/cases"));
    QCOMPARE(ReadStartupPath(settings), QStringLiteral("/home/user/cases"));
    // My Documents: the folder changes, the setting does not.
    menu.findChild<QPushButton*>(QStringLiteral("cmdMyDocuments"))->click();
    QCOMPARE(Q(b.s.DataPath), DocumentsFolder());
    QCOMPARE(ReadStartupPath(settings), QStringLiteral("/home/user/cases"));
  }

  void languageSwitchRecaptionsTheMenu() {
    Bench b;
    QSettings settings(Ini(QStringLiteral("lang.ini")), QSettings::IniFormat);
    FrmMenu menu(b.ctx, settings);
    QCOMPARE(menu.ProgramButton(2)->text(), QStringLiteral("フラッシュ計算 (&3)"));
    QCOMPARE(menu.windowTitle(), QStringLiteral("Tervaleプログラム"));
    QVERIFY(EmptyCaptions(&menu).isEmpty());
    menu.SetLanguage(1);
    QCOMPARE(b.s.LanguageFlag, 1);
    QCOMPARE(menu.ProgramButton(2)->text(), QStringLiteral("Flash Calculation (&3)"));
    QCOMPARE(menu.ProgramButton(8)->text(), QStringLiteral("Interraction Parameter (&9)"));
    QCOMPARE(menu.findChild<QPushButton*>(QStringLiteral("cmdExit"))->text(),
             QStringLiteral("E x i t (&X)"));
    QCOMPARE(menu.findChild<QLabel*>(QStringLiteral("lblTitle"))->text(),
             QStringLiteral("[Tervale Program]"));
    QCOMPARE(menu.findChild<QLabel*>(QStringLiteral("lblVersion"))->text(),
             QStringLiteral("Ver.05.1010"));
    QVERIFY(EmptyCaptions(&menu).isEmpty());
    menu.SetLanguage(0);
    QCOMPARE(menu.findChild<QPushButton*>(QStringLiteral("cmdExit"))->text(),
             QStringLiteral("終  了 (&X)"));
  }

  void programWithoutScreenSaysSoAndMenuStays() {
    Bench b;
    QSettings settings(Ini(QStringLiteral("prog.ini")), QSettings::IniFormat);
    FrmMenu menu(b.ctx, settings);
    menu.show();
    menu.ProgramButton(1)->click();
    QCOMPARE(b.s.ActiveProgram, 1);
    QCOMPARE(b.s.BatchMode, 1);
    QCOMPARE(b.dialogs.messages.size(), size_t{1});
    QVERIFY(menu.isVisible());
  }

  void secondInstanceIsRefused() {
    QTemporaryDir lockDir;
    auto first = AcquireSingleInstance(lockDir.path());
    QVERIFY(first != nullptr);
    QVERIFY(AcquireSingleInstance(lockDir.path()) == nullptr);
    first.reset();
    QVERIFY(AcquireSingleInstance(lockDir.path()) != nullptr);
  }
};

int RunShellTests(int argc, char** argv) {
  ShellTest t;
  return QTest::qExec(&t, argc, argv);
}

#include "shell_test.moc"
