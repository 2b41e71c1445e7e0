#pragma once
// Base of the modal sub-forms: OK stores, Cancel and Escape store nothing, the window's close
// box is refused; every caption is assigned by one retranslate() from the two-language pairs.
#include <QDialog>

#include "screens/screen_context.h"
#include "screens/screen_text.h"

class QPushButton;

namespace tervale::screens {

class SubForm : public QDialog {
  Q_OBJECT
 public:
  SubForm(ScreenContext& ctx, QWidget* parent);

  // Assigns every caption from LanguageFlag. Called at load; the only place captions are set.
  virtual void retranslate() = 0;
  // The form's name (frmUnit, ...), also its object name.
  QString FormName() const { return objectName(); }

  QPushButton* OkButton() const { return cmdOK_; }
  QPushButton* CancelButton() const { return cmdCancel_; }

  void accept() override;
  void done(int result) override;

 protected:
  // Copies the controls into the state. Returns false (after telling the user why) to keep
  // the form open with nothing stored.
  virtual bool Store() = 0;
  // Caption of the window: TitlePrefix followed by the form's own title.
  void SetCaption(const BiText& title);
  // Builds the OK/Cancel pair; the caller lays it out.
  void MakeOkCancel();
  void RetranslateOkCancel();

  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;

  ScreenContext& ctx_;
  SharedCalcState& s_;
  QPushButton* cmdOK_ = nullptr;
  QPushButton* cmdCancel_ = nullptr;

 private:
  bool closingByProgram_ = false;
};

// Base of the programs' main forms: the exit button unloads the form and the menu returns.
class MainForm : public QWidget, public MainFormLabels {
  Q_OBJECT
 public:
  MainForm(ScreenContext& ctx, QWidget* parent = nullptr);
  virtual void retranslate() = 0;
  QString FormName() const { return objectName(); }

 signals:
  // The form is being unloaded; the menu shows itself again.
  void exited();

 public slots:
  void ExitProgram();

 protected:
  void closeEvent(QCloseEvent* event) override;
  ScreenContext& ctx_;
  SharedCalcState& s_;

 private:
  bool exiting_ = false;
};

}  // namespace tervale::screens
