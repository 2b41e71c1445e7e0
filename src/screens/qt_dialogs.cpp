#include "screens/qt_dialogs.h"

#include <QApplication>
#include <QMessageBox>
#include <QThread>

#include "screens/screen_text.h"

namespace tervale::screens {

QtUserDialogs::QtUserDialogs(QWidget* window) : window_(window) {}

void QtUserDialogs::Message(std::string_view text) {
  Present(Q(text), Buttons::Ok, false);
}

Answer QtUserDialogs::Ask(std::string_view text, Buttons buttons) {
  return Present(Q(text), buttons, true);
}

Answer QtUserDialogs::Present(const QString& text, Buttons buttons, bool question) {
  if (QThread::currentThread() == thread()) return ShowBox(text, buttons, question);
  // From a calculation thread: hand the box to the GUI thread and wait for the answer.
  Answer answer = DefaultAnswer(buttons);
  QMetaObject::invokeMethod(
      this, [&] { answer = ShowBox(text, buttons, question); }, Qt::BlockingQueuedConnection);
  return answer;
}

Answer QtUserDialogs::ShowBox(const QString& text, Buttons buttons, bool question) {
  if (presenter_) return presenter_(text, buttons, question);
  QMessageBox::StandardButtons b = QMessageBox::Ok;
  switch (buttons) {
    case Buttons::Ok:
      b = QMessageBox::Ok;
      break;
    case Buttons::OkCancel:
      b = QMessageBox::Ok | QMessageBox::Cancel;
      break;
    case Buttons::YesNo:
      b = QMessageBox::Yes | QMessageBox::No;
      break;
    case Buttons::YesNoCancel:
      b = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
      break;
    case Buttons::RetryCancel:
      b = QMessageBox::Retry | QMessageBox::Cancel;
      break;
  }
  // Over the window in use (the menu is hidden while a program is open).
  QWidget* parent = QApplication::activeModalWidget();
  if (!parent) parent = QApplication::activeWindow();
  if (!parent) parent = window_.data();
  QMessageBox box(question ? QMessageBox::Question : QMessageBox::Information,
                  QApplication::applicationDisplayName(), text, b, parent);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return Answer::Yes;
    case QMessageBox::No:
      return Answer::No;
    case QMessageBox::Cancel:
      return Answer::Cancel;
    case QMessageBox::Retry:
      return Answer::Retry;
    default:
      return Answer::Ok;
  }
}

}  // namespace tervale::screens
