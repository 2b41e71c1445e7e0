#include "screens/db_lookup.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "database/property_db.h"
#include "state/errors.h"

namespace tervale::screens {

FrmDBLookup::FrmDBLookup(ScreenContext& ctx, db::PropertyDatabase& database, db::LookupKind kind,
                         CalcGrid* grid, QWidget* parent)
    : SubForm(ctx, parent), db_(database), kind_(kind), grid_(grid) {
  static constexpr const char* kNames[] = {
      "frmDBAntoine", "frmDBComponent", "frmDBEnthalpyCoeff", "frmDBEnthalpyCoeff", "frmDBWilson",
      "frmDBNRTL",    "frmDBKij"};
  setObjectName(QString::fromLatin1(kNames[static_cast<int>(kind)]));
  // The calling grid as the dialogue sees it: its texts and its active cell.
  const QModelIndex cur = grid_->currentIndex();
  caller_.ActiveRow = cur.isValid() ? cur.row() + 1 : 1;
  caller_.ActiveCol = cur.isValid() ? cur.column() + 1 : 1;
  for (int r = 1; r <= grid_->rowCount(); ++r)
    for (int c = 1; c <= grid_->columnCount(); ++c) {
      const QString t = grid_->Text(r, c);
      if (!t.isEmpty()) caller_.Set(r, c, S(t));
    }
  dialog_ = db::IsPairLookup(kind) ? db::ShowPairLookup(db_, s_, kind, caller_)
                                   : db::ShowSubstanceLookup(db_, s_, kind, caller_);

  lblHeading_ = new QLabel(this);
  list_ = new QTableWidget(this);
  list_->setObjectName(QStringLiteral("lstFound"));
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  lblFound_ = new QLabel(this);
  lblFound_->setProperty("valueField", true);
  connect(list_, &QTableWidget::currentCellChanged, this,
          [this](int row) { dialog_.SelectedRow = row + 1; });
  connect(list_, &QTableWidget::cellDoubleClicked, this, [this] { accept(); });
  MakeOkCancel();
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(lblFound_, 1);
  buttons->addWidget(cmdOK_);
  buttons->addWidget(cmdCancel_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblHeading_);
  layout->addWidget(list_, 1);
  layout->addLayout(buttons);
  resize(860, 420);
  retranslate();
  dialog_.SelectedRow = 0;
}

void FrmDBLookup::retranslate() {
  const db::LookupTexts& texts = db::TextsOf(kind_);
  setWindowTitle(T(s_, texts.title));
  lblHeading_->setText(T(s_, texts.heading));
  lblHeading_->setVisible(!texts.heading.en.empty());
  cmdOK_->setText(T(s_, db::kOkCaption));
  cmdCancel_->setText(T(s_, db::kCancelCaption));
  QStringList headers;
  for (const auto& c : texts.columns) headers << T(s_, c.header);
  const QSignalBlocker block(list_);
  list_->clear();
  list_->setColumnCount(static_cast<int>(headers.size()));
  list_->setHorizontalHeaderLabels(headers);
  list_->setRowCount(dialog_.Found.RecordCount());
  for (int r = 1; r <= dialog_.Found.RecordCount(); ++r)
    for (int c = 0; c < static_cast<int>(headers.size()); ++c)
      list_->setItem(r - 1, c, new QTableWidgetItem(Q(dialog_.ListCell(r, c))));
  list_->resizeColumnsToContents();
  lblFound_->setText(Q(dialog_.Label));
}

bool FrmDBLookup::Store() {
  caller_.Written.clear();
  if (db::LookupOk(db_, s_, dialog_, caller_) == db::OkResult::StaysOpen) return false;
  for (const auto& w : caller_.Written) grid_->SetText(w.row, w.col, Q(w.text));
  return true;
}

bool RunDatabaseLookup(ScreenContext& ctx, db::LookupKind kind, CalcGrid* grid, QWidget* parent) {
  std::unique_ptr<db::PropertyDatabase> database = db::OpenPropertyDatabase(ctx.s);
  if (!database) return false;
  try {
    FrmDBLookup form(ctx, *database, kind, grid, parent);
    return form.exec() == QDialog::Accepted;
  } catch (const TervaleError& e) {
    ShowMessage(ctx.s, e.what());
    return false;
  }
}

}  // namespace tervale::screens
