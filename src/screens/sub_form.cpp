#include "screens/sub_form.h"

#include <QCloseEvent>
#include <QPushButton>

namespace tervale::screens {

SubForm::SubForm(ScreenContext& ctx, QWidget* parent) : QDialog(parent), ctx_(ctx), s_(ctx.s) {
  setModal(true);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

void SubForm::MakeOkCancel() {
  cmdOK_ = new QPushButton(this);
  cmdOK_->setObjectName(QStringLiteral("cmdOK"));
  cmdOK_->setDefault(false);
  cmdOK_->setAutoDefault(false);
  cmdCancel_ = new QPushButton(this);
  cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
  cmdCancel_->setAutoDefault(false);
  connect(cmdOK_, &QPushButton::clicked, this, &SubForm::accept);
  connect(cmdCancel_, &QPushButton::clicked, this, &SubForm::reject);
}

void SubForm::RetranslateOkCancel() {
  if (cmdOK_) cmdOK_->setText(T(s_, kTextOk));
  if (cmdCancel_) cmdCancel_->setText(T(s_, kTextCancel));
}

void SubForm::SetCaption(const BiText& title) {
  setWindowTitle(Q(s_.TitlePrefix) + T(s_, title));
}

void SubForm::accept() {
  if (!Store()) return;
  QDialog::accept();
}

void SubForm::done(int result) {
  closingByProgram_ = true;
  QDialog::done(result);
  closingByProgram_ = false;
}

void SubForm::showEvent(QShowEvent* event) {
  closingByProgram_ = false;
  QDialog::showEvent(event);
}

void SubForm::closeEvent(QCloseEvent* event) {
  // The window's close box is refused: only OK, Cancel and Escape leave the form.
  if (!closingByProgram_) {
    event->ignore();
    return;
  }
  QDialog::closeEvent(event);
}

MainForm::MainForm(ScreenContext& ctx, QWidget* parent)
    : QWidget(parent, Qt::Window), ctx_(ctx), s_(ctx.s) {
  setAttribute(Qt::WA_DeleteOnClose, false);
}

void MainForm::ExitProgram() {
  if (exiting_) return;
  exiting_ = true;
  hide();
  emit exited();
  deleteLater();
}

void MainForm::closeEvent(QCloseEvent* event) {
  // The close box of a program's window does what its exit button does, so the menu returns.
  event->accept();
  ExitProgram();
}

}  // namespace tervale::screens
