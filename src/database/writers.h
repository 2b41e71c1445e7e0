#pragma once
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "database/property_db.h"
#include "state/bitext.h"

namespace tervale {
struct SharedCalcState;
struct VLEDataCase;
}  // namespace tervale

namespace tervale::db {

// What a parameter save stores: the binary case of the estimation program (components 1 and 2,
// their Antoine constants, the kind of calculation and the parameters found).
struct ParameterSaveCase {
  std::array<std::string, 3> ComponentName{};  // 1..2
  std::array<double, 3> AntoineA{}, AntoineB{}, AntoineC{};
  // Validity range of the Antoine constants for a new Antoine row; Null when not known.
  std::array<std::optional<double>, 3> AntoineTL{}, AntoineTU{};
  int CalcType = 1;  // 1, 3 Wilson; 2, 4 NRTL
  int TPType = 0;    // 0: temp = VLETemperature is stored, 1: press = VLEPressure
  double VLETemperature = 0;
  double VLEPressure = 0;
  double WilsonLambda12 = 1, WilsonLambda21 = 1;
  double NrtlTau12 = 0, NrtlTau21 = 0, NrtlAlpha = 0.4;
};

bool IsWilsonCalc(int calcType);

// The values a save takes from the binary estimation program's case.
ParameterSaveCase ParameterSaveCaseFrom(const VLEDataCase& c);

// The parameter-save form (frmDBParameterSave) after its load.
struct ParameterSaveForm {
  ParameterSaveCase Case;
  std::string Title;
  std::array<bool, 3> AntoineKnown{};
  std::array<std::int16_t, 3> AntoineLastIndex{-1, -1, -1};
  bool ParameterDuplicate = false;
  std::int16_t ParameterLastIndex = -1;
  // The grid: formula per component (editable by the user), and the Index of the stored
  // Antoine row with the same constants ("" when there is none).
  std::array<std::string, 3> Formula{};
  std::array<std::string, 3> AntoineIndexShown{};
  std::string Memo;        // the memo box
  std::string ModeLabel;   // "新規登録" or "Parameter追加登録"
  std::string IndexLabel;  // "Data Index= " and the Index a save will take
  bool LoadFailed = false;
};

// Load: which Antoine rows and parameter rows exist for the pair, in both name orders.
// A database error shows "ERROR: DataBase ｴﾗｰ!!" and sets LoadFailed.
ParameterSaveForm LoadParameterSave(PropertyDatabase& db, SharedCalcState& s,
                                    const ParameterSaveCase& c);

// Showing: the duplicate warning when the same parameters are stored already.
void ShowParameterSave(SharedCalcState& s, const ParameterSaveForm& form);

// The critical-constant form, opened by a save when a component is missing from
// CriticalConstant: given the name and the formula of the grid, it returns the formula it holds
// when it closes (saved or cancelled).
using CriticalConstantFormFn =
    std::function<std::string(const std::string& name, const std::string& formula)>;

enum class SaveOutcome {
  Saved,      // rows written, the form closes
  Duplicate,  // the same parameters were stored already: the form closes, nothing written
  Stopped,    // a check or the user stopped the save: the form stays open
  Failed,     // the database refused a write; its error was shown
};

struct SaveResult {
  SaveOutcome outcome = SaveOutcome::Stopped;
  int antoineRowsAdded = 0;
  bool parameterRowAdded = false;
  int parameterIndex = -1;  // Index of the parameter row written
};

// cmdSave of the parameter-save form. Questions and messages go through the state's dialogs.
SaveResult SaveParameters(PropertyDatabase& db, SharedCalcState& s, ParameterSaveForm& form,
                          const CriticalConstantFormFn& openCriticalConstantForm = {});

// ---- Antoine rows ----

// One row of AntoineConstant as the writers add it (Equation Type 1, today's date).
struct AntoineRow {
  std::string Formula;
  std::string Name;
  std::int64_t Index = 0;
  double AN = 0, BN = 0, CN = 0;
  std::optional<double> TL, TU;
  std::optional<std::string> Memo;
};

// Adds the row in one transaction: it is written whole or not at all. Throws DatabaseError.
void AddAntoineRow(PropertyDatabase& db, const AntoineRow& row);

// ---- the critical-constant form (frmDBCriticalConstant) ----

// Its grid: formula (row 1 column 1), name (row 1 column 2) and one text per further column,
// in the order of kCriticalConstantFields. An empty text gives Null.
inline constexpr std::array<std::string_view, 12> kCriticalConstantFields = {
    "Name-1", "Index", "MW", "Tm", "Tb", "Tc", "Pc", "Vc", "Zc", "Omg", "dp", "Memo"};

struct CriticalConstantEntry {
  std::string Formula;
  std::string Name;
  std::array<std::string, 12> Fields{};
};

struct CriticalSaveResult {
  bool saved = false;
  std::int64_t No = 0;  // the running number the database gave the row
  std::string Formula;  // the formula, kept as the case's formula value
};

// cmdSave: adds the row; No is the next running number of the table. A text that is no number
// in a number column, or a refused write, shows the database's error under "ERROR:" and writes
// nothing.
CriticalSaveResult SaveCriticalConstant(PropertyDatabase& db, SharedCalcState& s,
                                        const CriticalConstantEntry& entry);

}  // namespace tervale::db
