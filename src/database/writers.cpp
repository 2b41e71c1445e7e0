#include "database/writers.h"

#include <cmath>
#include <limits>

#include "database/lookups.h"
#include "io/field_reader.h"
#include "state/shared_state.h"

namespace tervale::db {

bool IsWilsonCalc(int calcType) {
  return calcType == 1 || calcType == 3;
}

ParameterSaveCase ParameterSaveCaseFrom(const VLEDataCase& v) {
  ParameterSaveCase c;
  for (int k = 1; k <= 2; ++k) {
    c.ComponentName[k] = v.ComponentName[k];
    c.AntoineA[k] = v.AntoineA[k];
    c.AntoineB[k] = v.AntoineB[k];
    c.AntoineC[k] = v.AntoineC[k];
  }
  c.CalcType = v.CalcType;
  c.TPType = v.TPType;
  c.VLETemperature = v.VLETemperature;
  c.VLEPressure = v.VLEPressure;
  c.WilsonLambda12 = v.WilsonLambda12;
  c.WilsonLambda21 = v.WilsonLambda21;
  c.NrtlTau12 = v.NrtlTau12;
  c.NrtlTau21 = v.NrtlTau21;
  c.NrtlAlpha = v.NrtlAlpha;
  return c;
}

namespace {

constexpr BiText kSaveWilsonTitle{"Save Wilson Parameter", "Wilson Parameter 保存"};
constexpr BiText kSaveNrtlTitle{"Save N.R.T.L. Parameter", "N.R.T.L. Parameter 保存"};

std::string_view ParameterTable(const ParameterSaveCase& c) {
  return IsWilsonCalc(c.CalcType) ? "Wilson Parameter" : "NRTL Parameter";
}

// The form keeps its indexes as 16-bit integers: a larger Index is an overflow.
std::int16_t ToIndex16(const Value& v) {
  auto n = AsNumber(v);
  if (!n) return -1;
  if (*n < std::numeric_limits<std::int16_t>::min() ||
      *n > std::numeric_limits<std::int16_t>::max())
    throw DatabaseError("Overflow", 0);
  return std::int16_t(std::lround(*n));
}

bool SameNumber(const Value& v, double x) {
  auto n = AsNumber(v);
  return n && *n == x;  // exactly: a rounded value is another value
}

}  // namespace

ParameterSaveForm LoadParameterSave(PropertyDatabase& db, SharedCalcState& s,
                                    const ParameterSaveCase& c) {
  ParameterSaveForm f;
  f.Case = c;
  const bool wilson = IsWilsonCalc(c.CalcType);
  f.Title = std::string(Pick(s, wilson ? kSaveWilsonTitle : kSaveNrtlTitle));
  try {
    for (int k = 1; k <= 2; ++k) {
      f.AntoineKnown[k] = false;
      f.AntoineLastIndex[k] = -1;
      RecordSet rs = db.Query(
          "SELECT [AntoineConstant].* FROM [AntoineConstant] WHERE [AntoineConstant].[Name] Like "
          "? order by [AntoineConstant].[index]",
          {c.ComponentName[k]});
      for (int r = 0; r < rs.RecordCount(); ++r) {
        if (r == 0) f.Formula[k] = AsText(rs.Field(0, "Formula"));
        f.AntoineLastIndex[k] = ToIndex16(rs.Field(r, "Index"));
        if (SameNumber(rs.Field(r, "AN"), c.AntoineA[k]) &&
            SameNumber(rs.Field(r, "BN"), c.AntoineB[k]) &&
            SameNumber(rs.Field(r, "CN"), c.AntoineC[k])) {
          f.AntoineKnown[k] = true;
          f.AntoineIndexShown[k] = AsText(rs.Field(r, "Index"));
        }
      }
    }
    f.ParameterDuplicate = false;
    f.ParameterLastIndex = -1;
    const std::string t =
        ParameterTable(c) == "Wilson Parameter" ? "[Wilson Parameter]" : "[NRTL Parameter]";
    const double p1 = wilson ? c.WilsonLambda12 : c.NrtlTau12;
    const double p2 = wilson ? c.WilsonLambda21 : c.NrtlTau21;
    for (int a = 1; a <= 2; ++a) {
      // a = 2 is the pair in the other name order: its parameter columns are exchanged.
      const std::string& first = c.ComponentName[a];
      const std::string& second = c.ComponentName[3 - a];
      RecordSet rs =
          db.Query("SELECT " + t + ".* FROM " + t + " WHERE (" + t + ".[Name1] = ? and " + t +
                       ".[Name2] = ? ) " + (wilson ? "" : " ") + "order by " + t + ".[Index]",
                   {first, second});
      // The mode label is set for each name order in turn: the reversed order's query has
      // the last word.
      f.ModeLabel = rs.RecordCount() == 0 ? "新規登録" : "Parameter追加登録";
      for (int r = 0; r < rs.RecordCount(); ++r) {
        const auto& row = rs.rows[size_t(r)];
        f.ParameterLastIndex = ToIndex16(rs.Field(r, "Index"));
        // Lambda12 / Tau12 is column 5 and Lambda21 / Tau21 column 6, counted from 0.
        const size_t col1 = size_t(a + 4), col2 = size_t(7 - a);
        if (row.size() > col2 && row.size() > col1 && SameNumber(row[col1], p1) &&
            SameNumber(row[col2], p2)) {
          f.ParameterDuplicate = true;
          f.Memo = AsText(rs.Field(r, "Memo"));
        }
      }
    }
    f.IndexLabel = "Data Index= " + std::to_string(f.ParameterLastIndex + 1);
  } catch (const TervaleError&) {
    f.LoadFailed = true;
    ShowMessage(s, Same("ERROR: DataBase ｴﾗｰ!!"));
  }
  return f;
}

void ShowParameterSave(SharedCalcState& s, const ParameterSaveForm& form) {
  if (!form.ParameterDuplicate) return;
  ShowMessage(s,
              Same(IsWilsonCalc(form.Case.CalcType) ? "すでに同じWilson Parameterが登録済み！！"
                                                    : "すでに同じN.R.T.L Parameterが登録済み！！"));
}

void AddAntoineRow(PropertyDatabase& db, const AntoineRow& row) {
  auto optional = [](const auto& v) -> Value { return v ? Value(*v) : Value(std::monostate{}); };
  db.InTransaction([&] {
    db.Execute(
        "INSERT INTO [AntoineConstant] ([Formula], [Name], [Index], [Equation Type], [AN], [BN], "
        "[CN], [TL], [TU], [Memo], [Date_Create]) VALUES (?, ?, ?, 1, ?, ?, ?, ?, ?, ?, ?)",
        {row.Formula, row.Name, row.Index, row.AN, row.BN, row.CN, optional(row.TL),
         optional(row.TU), optional(row.Memo), Today()});
  });
}

SaveResult SaveParameters(PropertyDatabase& db, SharedCalcState& s, ParameterSaveForm& f,
                          const CriticalConstantFormFn& openCriticalConstantForm) {
  SaveResult result;
  const ParameterSaveCase& c = f.Case;
  const bool wilson = IsWilsonCalc(c.CalcType);
  try {
    // 1. Both components must stand in CriticalConstant, or the user is asked to add them.
    for (int k = 1; k <= 2; ++k) {
      RecordSet rs = db.Query(
          "SELECT [CriticalConstant].* FROM [CriticalConstant] WHERE [CriticalConstant].[Name] "
          "Like ?",
          {c.ComponentName[k]});
      if (rs.RecordCount() > 0) continue;
      // The second button (No) is the default of this question.
      Answer a = AskUser(
          s, Same(c.ComponentName[k] + " が臨界定数Databaseに登録されていません。登録しますか？"),
          Buttons::YesNo);
      if (a != Answer::Yes) return result;
      if (openCriticalConstantForm)
        f.Formula[k] = openCriticalConstantForm(c.ComponentName[k], f.Formula[k]);
    }
    // 2., 3. The formulas and the memo must be filled.
    for (int k = 1; k <= 2; ++k) {
      if (f.Formula[k].empty()) {
        ShowMessage(s, Same("'" + c.ComponentName[k] + "' の化学式を入力して下さい。"));
        return result;
      }
    }
    if (f.Memo.empty()) {
      ShowMessage(s, Same("メモを入力して下さい。"));
      return result;
    }
    // 4. The same parameters stand already: close without writing.
    if (f.ParameterDuplicate) {
      result.outcome = SaveOutcome::Duplicate;
      return result;
    }
    const std::string today = Today();
    // 5. Antoine constants not yet stored: one row each, each written whole or not at all.
    for (int k = 1; k <= 2; ++k) {
      if (f.AntoineKnown[k]) continue;
      ShowMessage(s, Same("'" + c.ComponentName[k] + "' のAntoine定数が未登録です。"));
      AntoineRow row;
      row.Formula = f.Formula[k];
      row.Name = c.ComponentName[k];
      row.Index = f.AntoineLastIndex[k] + 1;
      row.AN = c.AntoineA[k];
      row.BN = c.AntoineB[k];
      row.CN = c.AntoineC[k];
      row.TL = c.AntoineTL[k];
      row.TU = c.AntoineTU[k];
      AddAntoineRow(db, row);
      ++result.antoineRowsAdded;
      ShowMessage(s, Same("'" + c.ComponentName[k] + "' のAntoine定数を登録しました。"));
    }
    // 6. The parameter row.
    const std::int64_t index = f.ParameterLastIndex + 1;
    Value temp = std::monostate{}, press = std::monostate{};
    if (c.TPType == 0) {
      temp = c.VLETemperature;
    } else {
      press = c.VLEPressure;
    }
    db.InTransaction([&] {
      if (wilson) {
        db.Execute(
            "INSERT INTO [Wilson Parameter] ([Formula], [Name1], [Formula2], [Name2], [Index], "
            "[Lambda12], [Lambda21], [temp], [press], [Memo], [Date_Create]) VALUES (?, ?, ?, ?, "
            "?, ?, ?, ?, ?, ?, ?)",
            {f.Formula[1], c.ComponentName[1], f.Formula[2], c.ComponentName[2], index,
             c.WilsonLambda12, c.WilsonLambda21, temp, press, f.Memo, today});
      } else {
        db.Execute(
            "INSERT INTO [NRTL Parameter] ([Formula], [Name1], [Formula2], [Name2], [Index], "
            "[Tau12], [Tau21], [Alpha], [temp], [press], [Memo], [Date_Create]) VALUES (?, ?, ?, "
            "?, ?, ?, ?, ?, ?, ?, ?, ?)",
            {f.Formula[1], c.ComponentName[1], f.Formula[2], c.ComponentName[2], index, c.NrtlTau12,
             c.NrtlTau21, c.NrtlAlpha, temp, press, f.Memo, today});
      }
    });
    result.parameterRowAdded = true;
    result.parameterIndex = int(index);
    // 7. Done.
    ShowMessage(
        s, Same("'" + c.ComponentName[1] + " - " + c.ComponentName[2] +
                (wilson ? "' のWilson定数を保存しました。" : "' のN.R.T.L定数を保存しました。")));
    result.outcome = SaveOutcome::Saved;
  } catch (const TervaleError& e) {
    ShowTitledMessage(s, f.Title + " ERROR:", e.what());
    result.outcome = SaveOutcome::Failed;
  }
  return result;
}

CriticalSaveResult SaveCriticalConstant(PropertyDatabase& db, SharedCalcState& s,
                                        const CriticalConstantEntry& entry) {
  CriticalSaveResult result;
  result.Formula = entry.Formula;
  try {
    const TableDef* table = FindTable("CriticalConstant");
    std::vector<Value> values = {entry.Formula, entry.Name};
    for (size_t k = 0; k < kCriticalConstantFields.size(); ++k) {
      const std::string& text = entry.Fields[k];
      if (text.empty()) {
        values.emplace_back(std::monostate{});
        continue;
      }
      ColumnType type = ColumnType::Text;
      for (const auto& col : table->columns)
        if (col.name == kCriticalConstantFields[k]) type = col.type;
      if (type == ColumnType::Text) {
        values.emplace_back(text);
        continue;
      }
      double number = 0;
      if (!io::ParseNumber(text, number) || !std::isfinite(number))
        throw DatabaseError("Data type conversion error. (" +
                                std::string(kCriticalConstantFields[k]) + ": \"" + text + "\")",
                            0);
      if (type == ColumnType::Integer) {
        values.emplace_back(std::int64_t(std::llround(number)));
      } else {
        values.emplace_back(number);
      }
    }
    values.emplace_back(Today());
    db.InTransaction([&] {
      db.Query(
          "SELECT [CriticalConstant].* FROM [CriticalConstant] WHERE "
          "[CriticalConstant].[Name] Like ?",
          {entry.Name});
      // The running number is the table's own: one more than the largest, in the same
      // transaction as the row.
      db.Execute(
          "INSERT INTO [CriticalConstant] ([Formula], [Name], [Name-1], [Index], [MW], [Tm], "
          "[Tb], [Tc], [Pc], [Vc], [Zc], [Omg], [dp], [Memo], [No], [Date_Create]) SELECT ?, ?, "
          "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, COALESCE(MAX([No]), 0) + 1, ? FROM "
          "[CriticalConstant]",
          values);
      auto rs = db.Query("SELECT MAX([No]) FROM [CriticalConstant]");
      result.No = std::int64_t(AsNumber(rs.rows[0][0]).value_or(0));
    });
    result.saved = true;
  } catch (const TervaleError& e) {
    ShowTitledMessage(s, "ERROR:", e.what());
  }
  return result;
}

}  // namespace tervale::db
