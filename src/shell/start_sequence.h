#pragma once
// The start of the desktop program: platform and single-instance checks, the data folder
// from the "Startup"/"Path" setting or the documents folder, the property database file.
#include <QLockFile>
#include <QSettings>
#include <QString>
#include <memory>

#include "state/shared_state.h"

namespace tervale::shell {

inline constexpr BiText kPlatformRefused =
    Same("このアプリケーションは Windows98,Windows2000,WindowsXP 以外で使用することは出来ません");
inline constexpr BiText kSecondInstance =
    Same("このアプリケーションを複数起動することは出来ません。");

// The platforms the program runs on.
bool PlatformSupported();

// Holds the single-instance lock for the life of the process; null when another instance
// holds it already. lockFolder empty: the user's runtime folder.
std::unique_ptr<QLockFile> AcquireSingleInstance(const QString& lockFolder = QString());

// The settings store of the program (one ini file under the user's configuration folder).
std::unique_ptr<QSettings> OpenUserSettings();

// "Startup"/"Path", section and key matched without regard to case; empty when absent.
QString ReadStartupPath(QSettings& settings);
// Writes section "startup", key "Path" (into the spelling of the section already present).
void WriteStartupPath(QSettings& settings, const QString& path);

// The user's personal documents folder.
QString DocumentsFolder();

// application folder + "/Masterd$.mdb" when that file exists, else + "/Masterd$.mde".
QString ResolveDatabaseFile(const QString& applicationFolder);

// Steps of the menu's load after the two checks: DataPath, LanguageFlag 0, DatabaseFile.
void RunStartSequence(SharedCalcState& s, QSettings& settings, const QString& applicationFolder);

// The folder of a name chosen in the data-folder dialog: the part before the last separator.
QString FolderOfChosenName(const QString& chosen);

}  // namespace tervale::shell
