// Runs every screen test class; headless with QT_QPA_PLATFORM=offscreen.
#include <QApplication>
#include <QtTest>

int RunShellTests(int argc, char** argv);
int RunToolkitTests(int argc, char** argv);
int RunSubFormTests(int argc, char** argv);
int RunFlashScreenTests(int argc, char** argv);

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("TervaleTest"));
  int failed = 0;
  failed += RunShellTests(argc, argv);
  failed += RunToolkitTests(argc, argv);
  failed += RunSubFormTests(argc, argv);
  failed += RunFlashScreenTests(argc, argv);
  return failed == 0 ? 0 : 1;
}
