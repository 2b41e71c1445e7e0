#pragma once
// What every screen is handed: the process-wide state, where messages and file names come
// from, and the main forms that receive the sub-forms' summary labels.
#include <QString>
#include <array>

#include "state/shared_state.h"

class QWidget;

namespace tervale::screens {

// The summary labels of a program's main form. The shared sub-forms write to the main form
// of the program that called them, chosen by BatchMode.
class MainFormLabels {
 public:
  virtual ~MainFormLabels() = default;
  virtual void ShowComponentCount(int nc) {}
  virtual void ShowUnitLabels(const QString& temp, const QString& press, const QString& heat) {}
  virtual void ShowKValueMethod(const QString& text) {}
  virtual void ShowEnthalpyMethod(const QString& text) {}
  // The component list changed (names, count): grids that show it are refilled.
  virtual void RefreshComponents() {}
};

// The file dialogs, replaceable in tests. An empty result means the dialog was cancelled.
class FileChooser {
 public:
  virtual ~FileChooser() = default;
  virtual QString SaveFileName(QWidget* parent, const QString& title, const QString& folder,
                               const QString& fileName, const QString& defaultSuffix,
                               const QString& filter) = 0;
  virtual QString OpenFileName(QWidget* parent, const QString& title, const QString& folder,
                               const QString& filter) = 0;
};

// QFileDialog, the platform's own file dialog.
class QtFileChooser : public FileChooser {
 public:
  QString SaveFileName(QWidget* parent, const QString& title, const QString& folder,
                       const QString& fileName, const QString& defaultSuffix,
                       const QString& filter) override;
  QString OpenFileName(QWidget* parent, const QString& title, const QString& folder,
                       const QString& filter) override;
};

struct ScreenContext {
  explicit ScreenContext(SharedCalcState& state) : s(state) {}
  SharedCalcState& s;
  FileChooser* files = nullptr;
  // Main forms by BatchMode (0 continuous, 1 batch, 2 flash).
  std::array<MainFormLabels*, 3> hosts{};

  MainFormLabels* Host() const {
    return s.BatchMode >= 0 && s.BatchMode < 3 ? hosts[static_cast<size_t>(s.BatchMode)] : nullptr;
  }
};

}  // namespace tervale::screens
