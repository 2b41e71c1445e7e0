#pragma once
// Shared pieces of the screen tests: a state with its context, a main form that records the
// summary labels it is sent, a file chooser with prepared answers, and the caption walk.
#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QStringList>
#include <QTableWidget>
#include <memory>

#include "screens/screen_context.h"
#include "state/shared_state.h"

namespace tervale::screens::testing {

struct RecordingHost : MainFormLabels {
  int nc = -1;
  QString temp, press, heat, kvalue, enthalpy;
  int refreshed = 0;
  void ShowComponentCount(int n) override { nc = n; }
  void ShowUnitLabels(const QString& t, const QString& p, const QString& h) override {
    temp = t;
    press = p;
    heat = h;
  }
  void ShowKValueMethod(const QString& t) override { kvalue = t; }
  void ShowEnthalpyMethod(const QString& t) override { enthalpy = t; }
  void RefreshComponents() override { ++refreshed; }
};

struct PreparedFiles : FileChooser {
  QString answer;  // empty: the dialog is cancelled
  int asked = 0;
  QString lastFolder;
  QString SaveFileName(QWidget*, const QString&, const QString& folder, const QString&,
                       const QString&, const QString&) override {
    ++asked;
    lastFolder = folder;
    return answer;
  }
  QString OpenFileName(QWidget*, const QString&, const QString& folder, const QString&) override {
    ++asked;
    lastFolder = folder;
    return answer;
  }
};

struct Bench {
  std::unique_ptr<SharedCalcState> state = MakeSharedCalcState();
  SharedCalcState& s = *state;
  ScreenContext ctx{s};
  RecordingDialogs dialogs;
  RecordingHost host;
  PreparedFiles files;
  Bench() {
    s.Dialogs = &dialogs;
    ctx.files = &files;
    ctx.hosts = {&host, &host, &host};
  }
};

// Every caption a user sees on a form: window title, labels, buttons, group titles, list
// items and grid headings of the visible widgets. Labels marked with the property
// "valueField" hold results, not captions, and are left out. Returns the names of the
// controls with an empty caption.
inline QStringList EmptyCaptions(QWidget* form) {
  QStringList empty;
  if (form->windowTitle().trimmed().isEmpty() && form->isWindow())
    empty << form->objectName() + QStringLiteral(".windowTitle");
  for (QWidget* w : form->findChildren<QWidget*>()) {
    if (!w->isVisibleTo(form) || w->property("valueField").toBool()) continue;
    const QString name = w->objectName().isEmpty()
                             ? QString::fromLatin1(w->metaObject()->className())
                             : w->objectName();
    if (auto* l = qobject_cast<QLabel*>(w)) {
      if (l->text().trimmed().isEmpty() && l->pixmap().isNull()) empty << name;
    } else if (auto* b = qobject_cast<QAbstractButton*>(w)) {
      if (b->text().trimmed().isEmpty() && b->icon().isNull() &&
          !qobject_cast<QHeaderView*>(b->parentWidget()) &&
          QString::fromLatin1(b->metaObject()->className()) != QStringLiteral("QTableCornerButton"))
        empty << name;
    } else if (auto* c = qobject_cast<QComboBox*>(w)) {
      for (int i = 0; i < c->count(); ++i)
        if (c->itemText(i).trimmed().isEmpty()) empty << name + QStringLiteral("[%1]").arg(i);
    } else if (auto* t = qobject_cast<QTableWidget*>(w)) {
      for (int i = 0; i < t->columnCount(); ++i) {
        const QTableWidgetItem* h = t->horizontalHeaderItem(i);
        if (h && h->text().trimmed().isEmpty()) empty << name + QStringLiteral(".col%1").arg(i);
      }
    }
  }
  return empty;
}

}  // namespace tervale::screens::testing
