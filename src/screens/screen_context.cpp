#include "screens/screen_context.h"

#include <QFileDialog>

namespace tervale::screens {

QString QtFileChooser::SaveFileName(QWidget* parent, const QString& title, const QString& folder,
                                    const QString& fileName, const QString& defaultSuffix,
                                    const QString& filter) {
  QFileDialog dialog(parent, title, folder, filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite, true);  // the caller asks its own question
  dialog.setDefaultSuffix(defaultSuffix);
  if (!fileName.isEmpty()) dialog.selectFile(fileName);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return QString();
  return dialog.selectedFiles().constFirst();
}

QString QtFileChooser::OpenFileName(QWidget* parent, const QString& title, const QString& folder,
                                    const QString& filter) {
  return QFileDialog::getOpenFileName(parent, title, folder, filter);
}

}  // namespace tervale::screens
