#include "shell/start_sequence.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "screens/screen_text.h"

namespace tervale::shell {
namespace {

const QString kSection = QStringLiteral("Startup");
const QString kKey = QStringLiteral("Path");

// The spelling of a child (group or key) equal to name without regard to case, or empty.
QString FindNoCase(const QStringList& names, const QString& name) {
  for (const QString& n : names)
    if (n.compare(name, Qt::CaseInsensitive) == 0) return n;
  return QString();
}

}  // namespace

bool PlatformSupported() {
#if defined(Q_OS_LINUX) || defined(Q_OS_UNIX)
  return true;
#else
  return false;
#endif
}

std::unique_ptr<QLockFile> AcquireSingleInstance(const QString& lockFolder) {
  QString folder = lockFolder;
  if (folder.isEmpty()) folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (folder.isEmpty()) folder = QDir::tempPath();
  QDir().mkpath(folder);
  auto lock = std::make_unique<QLockFile>(QDir(folder).filePath(QStringLiteral("tervale.lock")));
  lock->setStaleLockTime(0);
  if (!lock->tryLock(0)) return nullptr;
  return lock;
}

std::unique_ptr<QSettings> OpenUserSettings() {
  return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                     QStringLiteral("Tervale"), QStringLiteral("Tervale"));
}

QString ReadStartupPath(QSettings& settings) {
  const QString group = FindNoCase(settings.childGroups(), kSection);
  if (group.isEmpty()) return QString();
  settings.beginGroup(group);
  const QString key = FindNoCase(settings.childKeys(), kKey);
  const QString value = key.isEmpty() ? QString() : settings.value(key).toString();
  settings.endGroup();
  return value;
}

void WriteStartupPath(QSettings& settings, const QString& path) {
  QString group = FindNoCase(settings.childGroups(), kSection);
  if (group.isEmpty()) group = QStringLiteral("startup");
  settings.beginGroup(group);
  QString key = FindNoCase(settings.childKeys(), kKey);
  if (key.isEmpty()) key = kKey;
  settings.setValue(key, path);
  settings.endGroup();
  settings.sync();
}

QString DocumentsFolder() {
  QString docs = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  if (docs.isEmpty()) docs = QDir::homePath();
  return QDir::toNativeSeparators(docs);
}

QString ResolveDatabaseFile(const QString& applicationFolder) {
  const QString base = QDir(applicationFolder).filePath(QStringLiteral("Masterd$"));
  const QString mdb = base + QStringLiteral(".mdb");
  if (QFileInfo::exists(mdb)) return mdb;
  return base + QStringLiteral(".mde");
}

void RunStartSequence(SharedCalcState& s, QSettings& settings, const QString& applicationFolder) {
  QString path = ReadStartupPath(settings);
  if (path.isEmpty()) path = DocumentsFolder();
  s.DataPath = screens::S(path);
  s.LanguageFlag = 0;
  s.DatabaseFile = screens::S(ResolveDatabaseFile(applicationFolder));
}

QString FolderOfChosenName(const QString& chosen) {
  const QString native = QDir::fromNativeSeparators(chosen);
  const qsizetype cut = native.lastIndexOf(QLatin1Char('/'));
  return cut < 0 ? QString() : QDir::toNativeSeparators(native.left(cut == 0 ? 1 : cut));
}

}  // namespace tervale::shell
