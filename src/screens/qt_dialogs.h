#pragma once
// The desktop program's message boxes behind the core's UserDialogs. Safe to call from a
// calculation thread: the box is shown on the GUI thread and the caller waits for the answer.
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>

#include "state/dialogs.h"

namespace tervale::screens {

class QtUserDialogs : public QObject, public UserDialogs {
  Q_OBJECT
 public:
  // Shows the text and returns the answer; runs on the GUI thread. Tests replace it.
  using Presenter = std::function<Answer(const QString& text, Buttons buttons, bool question)>;

  // Create on the GUI thread.
  explicit QtUserDialogs(QWidget* window = nullptr);

  void SetWindow(QWidget* window) { window_ = window; }
  void SetPresenter(Presenter presenter) { presenter_ = std::move(presenter); }

  void Message(std::string_view text) override;
  Answer Ask(std::string_view text, Buttons buttons) override;

 private:
  Answer Present(const QString& text, Buttons buttons, bool question);
  Answer ShowBox(const QString& text, Buttons buttons, bool question);

  QPointer<QWidget> window_;
  Presenter presenter_;
};

}  // namespace tervale::screens
