// The shared sub-forms: OK stores and labels the calling main form, Cancel and Escape store
// nothing, the close box is refused, every caption exists in both languages.
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

#include "database/property_db.h"
#include "screen_test_support.h"
#include "screens/db_lookup.h"
#include "screens/program_forms.h"
#include "screens/shared_subforms.h"

using namespace tervale;
using namespace tervale::screens;
using namespace tervale::screens::testing;

namespace {

void FillThreeComponents(SharedCalcState& s) {
  s.NC = 3;
  const char* names[] = {"", "Ethane", "Propane", "n-Butane"};
  for (int i = 1; i <= 3; ++i) {
    s.Comp.CompName[i] = names[i];
    s.Comp.AntoineA[i] = 6.8 + i;
    s.Comp.HVapA[i] = 10.0 * i;
  }
  s.Bin.WilsonLambda[1][2] = 0.5;
  s.Bin.NrtlTau[2][1] = 0.25;
}

}  // namespace

class SubFormTest : public QObject {
  Q_OBJECT

 private slots:
  void unitOkStoresAndLabelsTheCallingForm() {
    Bench b;
    b.s.LanguageFlag = 1;
    b.s.BatchMode = 2;
    RecordingHost flashHost;
    b.ctx.hosts = {nullptr, nullptr, &flashHost};
    FrmUnit form(b.ctx);
    QCOMPARE(form.TempList()->currentIndex(), 0);  // selections minus one
    QCOMPARE(form.PressList()->currentIndex(), 2);
    QCOMPARE(form.HeatList()->currentIndex(), 1);
    QCOMPARE(form.TempList()->itemText(1), QStringLiteral("K"));
    form.TempList()->setCurrentIndex(1);
    form.PressList()->setCurrentIndex(4);
    form.OkButton()->click();
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QCOMPARE(b.s.Unit.TempUnit, 2);
    QCOMPARE(b.s.Unit.PressUnit, 5);
    QCOMPARE(flashHost.temp, QStringLiteral("K"));
    QCOMPARE(flashHost.press, QStringLiteral("Kgf/cm2"));
    QCOMPARE(flashHost.heat, QStringLiteral("Kcal"));
  }

  void escapeAndCancelStoreNothing() {
    Bench b;
    FrmUnit unit(b.ctx);
    unit.show();
    unit.TempList()->setCurrentIndex(2);
    QTest::keyClick(&unit, Qt::Key_Escape);
    QVERIFY(!unit.isVisible());
    QCOMPARE(unit.result(), int(QDialog::Rejected));
    QCOMPARE(b.s.Unit.TempUnit, 1);
    QVERIFY(b.host.temp.isEmpty());

    FillThreeComponents(b.s);
    FrmKValue kvalue(b.ctx);
    kvalue.show();
    kvalue.MethodList()->setCurrentIndex(1);
    kvalue.MatrixGrid()->SetText(1, 2, QStringLiteral("0.9"));
    kvalue.ConstantsGrid()->SetText(1, 2, QStringLiteral("1.0"));
    kvalue.CancelButton()->click();
    QCOMPARE(b.s.KValueMethod, 1);
    QCOMPARE(b.s.Bin.WilsonLambda[1][2], 0.5);
    QCOMPARE(b.s.Comp.AntoineA[1], 7.8);

    FrmMemo memo(b.ctx);
    memo.show();
    memo.Text()->setPlainText(QStringLiteral("new"));
    QTest::keyClick(&memo, Qt::Key_Escape);
    QVERIFY(b.s.MemoLine[1].empty());
  }

  void closeBoxIsRefused() {
    Bench b;
    FrmEnthalpy form(b.ctx);
    form.show();
    QVERIFY(!form.close());
    QVERIFY(form.isVisible());
    form.CancelButton()->click();
    QVERIFY(!form.isVisible());
    // Shown again, the close box is refused again.
    form.show();
    QVERIFY(!form.close());
    QVERIFY(form.isVisible());
    form.reject();
  }

  void kValueShowsTheMatrixOfTheMethodAndStoresOnlyIt() {
    Bench b;
    FillThreeComponents(b.s);
    b.s.KValueMethod = 1;
    FrmKValue form(b.ctx);
    form.show();
    QVERIFY(!form.MatrixFrame()->isVisible());  // hidden for the ideal method
    form.MethodList()->setCurrentIndex(1);
    QVERIFY(form.MatrixFrame()->isVisible());
    QCOMPARE(form.MatrixGrid()->Number(1, 2), 0.5);
    QCOMPARE(form.MatrixGrid()->Number(1, 1), 1.0);
    form.MethodList()->setCurrentIndex(2);  // redrawn from the stored NRTL matrix
    QCOMPARE(form.MatrixGrid()->Number(2, 1), 0.25);
    QVERIFY(form.AlphaBox()->isVisible());
    form.AlphaBox()->setText(QStringLiteral("0.3"));
    QCOMPARE(b.s.Bin.NrtlAlpha, 0.3);  // stored at once
    form.MatrixGrid()->SetText(1, 3, QStringLiteral("text"));
    form.MatrixGrid()->SetText(3, 1, QStringLiteral("1.5"));
    form.ConstantsGrid()->SetText(2, 4, QStringLiteral("230.5"));
    form.OkButton()->click();
    QCOMPARE(b.s.KValueMethod, 3);
    QCOMPARE(b.host.kvalue, QStringLiteral("3.Antoine+N.R.T.L"));
    QCOMPARE(b.s.Bin.NrtlTau[3][1], 1.5);
    QCOMPARE(b.s.Bin.NrtlTau[1][3], 0.0);       // text counts as 0
    QCOMPARE(b.s.Bin.WilsonLambda[1][2], 0.5);  // other matrices untouched
    QCOMPARE(b.s.Comp.AntoineC[2], 230.5);
  }

  void enthalpyLayoutsPerMethod() {
    Bench b;
    FillThreeComponents(b.s);
    b.s.EnthalpyMethod = 0;
    FrmEnthalpy form(b.ctx);
    form.show();
    QVERIFY(!form.Grid()->isVisible());
    form.MethodList()->setCurrentIndex(1);
    QVERIFY(form.Grid()->isVisible());
    QCOMPARE(form.Grid()->columnCount(), 7);
    QCOMPARE(form.Grid()->Number(2, 2), 20.0);
    form.Grid()->SetText(1, 5, QStringLiteral("-253.37"));
    form.MethodList()->setCurrentIndex(2);
    QCOMPARE(form.Grid()->columnCount(), 5);
    form.Grid()->SetText(3, 5, QStringLiteral("2.081E-09"));
    form.OkButton()->click();
    QCOMPARE(b.s.EnthalpyMethod, 2);
    QCOMPARE(b.s.Comp.CpD[3], 2.081e-09);
    QCOMPARE(b.s.Comp.HLiqA[1], 0.0);  // the polynomial layout was not the one shown
    QCOMPARE(b.host.enthalpy, QStringLiteral("2.Ｓ－Ｒ－Ｋ"));
  }

  void memoKeepsTenLines() {
    Bench b;
    FrmMemo memo(b.ctx);
    QStringList lines;
    for (int i = 1; i <= 12; ++i) lines << QStringLiteral("line %1").arg(i);
    memo.Text()->setPlainText(lines.join(QLatin1Char('\n')));
    memo.OkButton()->click();
    QCOMPARE(b.s.MemoLine[10], std::string("line 10"));
    FrmMemo again(b.ctx);
    QCOMPARE(again.Text()->toPlainText().split(QLatin1Char('\n')).size(), 10);
    again.findChild<QPushButton*>(QStringLiteral("cmdErase"))->click();
    QVERIFY(again.Text()->toPlainText().isEmpty());
  }

  void lookUpWithoutADatabaseSaysSoAndChangesNothing() {
    Bench b;
    b.s.DatabaseFile = "/no/such/Masterd$.mde";
    FrmComponent form(b.ctx);
    form.findChild<QPushButton*>(QStringLiteral("cmdDBSearch"))->click();
    QCOMPARE(b.dialogs.messages.size(), size_t{1});
    QVERIFY(b.dialogs.messages[0].find("/no/such/Masterd$.mde") != std::string::npos);
    QCOMPARE(b.s.NC, 0);
  }

  void componentLookUpCopiesTheChosenRow() {
    QTemporaryDir dir;
    const std::filesystem::path file = S(dir.filePath(QStringLiteral("Masterd$.mde")));
    db::BuildDatabaseFromSeed(std::filesystem::path(TERVALE_SOURCE_DIR) / "data" / "property-seed",
                              file);
    auto database = db::PropertyDatabase::Open(file);
    Bench b;
    b.s.ActiveProgram = 2;
    FrmComponent form(b.ctx);
    form.Grid()->SetText(1, 1, QStringLiteral("Methanol"));
    form.Grid()->setCurrentCell(0, 0);
    FrmDBLookup lookup(b.ctx, *database, db::LookupKind::Component, form.Grid());
    QCOMPARE(lookup.objectName(), QStringLiteral("frmDBComponent"));
    QVERIFY(lookup.List()->rowCount() >= 1);
    QVERIFY(EmptyCaptions(&lookup).isEmpty());
    // OK without a choice keeps the dialogue open with the core's message.
    lookup.OkButton()->click();
    QCOMPARE(lookup.result(), 0);
    QCOMPARE(b.dialogs.messages.size(), size_t{1});
    lookup.List()->setCurrentCell(0, 0);
    lookup.OkButton()->click();
    QCOMPARE(lookup.result(), int(QDialog::Accepted));
    QVERIFY(form.Grid()->Number(1, 2) > 30 && form.Grid()->Number(1, 2) < 34);  // MW ~32.04
    QVERIFY(form.Grid()->Number(1, 3) > 500);                                   // Tc ~512.6 K
  }

  void everyScreenHasItsCaptionsInBothLanguages() {
    for (int lang : {0, 1}) {
      Bench b;
      b.s.LanguageFlag = lang;
      FillThreeComponents(b.s);
      b.s.TitlePrefix = lang == 1 ? "Flash Calculation" : "ＦＬＡＳＨ計算";
      for (auto& make : ScreenshotMakers(b.ctx)) {
        std::unique_ptr<QWidget> w = make();
        w->show();
        const QStringList empty = EmptyCaptions(w.get());
        if (!empty.isEmpty())
          QFAIL(qPrintable(w->objectName() + QStringLiteral(": ") + empty.join(QLatin1Char(' '))));
        w->hide();
      }
    }
  }
};

int RunSubFormTests(int argc, char** argv) {
  SubFormTest t;
  return QTest::qExec(&t, argc, argv);
}

#include "subform_test.moc"
