#pragma once
// The desktop program put together: the state, the dialogs, the menu with its programs.
#include <QString>
#include <QTranslator>
#include <memory>

#include "screens/qt_dialogs.h"
#include "screens/screen_context.h"
#include "shell/frm_menu.h"

class QSettings;

namespace tervale::shell {

class DesktopApp {
 public:
  // settings: the store of the "Startup"/"Path" setting; applicationFolder: where the
  // program and its database stand.
  DesktopApp(QSettings& settings, const QString& applicationFolder);
  ~DesktopApp();

  SharedCalcState& State() { return *state_; }
  screens::ScreenContext& Context() { return ctx_; }
  FrmMenu& Menu() { return *menu_; }
  screens::QtUserDialogs& Dialogs() { return *dialogs_; }
  // Qt's own texts of stock buttons follow the language.
  void ApplyQtLanguage(int languageFlag);

 private:
  std::unique_ptr<SharedCalcState> state_;
  screens::ScreenContext ctx_;
  screens::QtFileChooser files_;
  std::unique_ptr<screens::QtUserDialogs> dialogs_;
  std::unique_ptr<FrmMenu> menu_;
  QTranslator qtTranslator_;
  bool translatorInstalled_ = false;
};

// Renders every screen in both languages to dir/en/NAME.png and dir/ja/NAME.png.
// Returns the number of files that could not be written.
int WriteScreenshots(const QString& dir);

}  // namespace tervale::shell
