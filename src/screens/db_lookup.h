#pragma once
// The look-up dialogues of the property database (frmDBComponent, frmDBAntoine,
// frmDBEnthalpyCoeff, frmDBWilson, frmDBNRTL, frmDBKij): the rows found for the calling grid's
// active cell, and OK copying the chosen row into the state and the calling grid.
#include <memory>

#include "database/lookups.h"
#include "screens/calc_grid.h"
#include "screens/sub_form.h"

class QLabel;

namespace tervale::screens {

class FrmDBLookup : public SubForm {
  Q_OBJECT
 public:
  // grid: the calling grid, whose current cell is the active cell; OK writes into it.
  FrmDBLookup(ScreenContext& ctx, db::PropertyDatabase& database, db::LookupKind kind,
              CalcGrid* grid, QWidget* parent = nullptr);
  void retranslate() override;
  QTableWidget* List() const { return list_; }
  const db::LookupDialog& Dialog() const { return dialog_; }

 protected:
  bool Store() override;

 private:
  db::PropertyDatabase& db_;
  db::LookupKind kind_;
  CalcGrid* grid_;
  db::CallerGrid caller_;
  db::LookupDialog dialog_;
  QLabel* lblHeading_;
  QTableWidget* list_;
  QLabel* lblFound_;
};

// Opens the database named by DatabaseFile and shows the look-up for the grid (modal).
// Returns true when OK copied a row. Without a database the user is told and nothing changes.
bool RunDatabaseLookup(ScreenContext& ctx, db::LookupKind kind, CalcGrid* grid, QWidget* parent);

}  // namespace tervale::screens
