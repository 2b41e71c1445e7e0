// The flash program from its screen: the same numbers as the flash core, the curve, files.
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include "flash/flash_program.h"
#include "screen_test_support.h"
#include "screens/flash_forms.h"
#include "screens/program_forms.h"
#include "screens/shared_subforms.h"
#include "shell/frm_menu.h"

using namespace tervale;
using namespace tervale::screens;
using namespace tervale::screens::testing;

namespace {

QPushButton* Button(QWidget* form, const char* name) {
  return form->findChild<QPushButton*>(QString::fromLatin1(name));
}

void Choose(FrmFlash& form, int calcType) {
  form.findChild<QRadioButton*>(QStringLiteral("optCalcType%1").arg(calcType))->click();
}

}  // namespace

class FlashScreenTest : public QObject {
  Q_OBJECT

 private slots:
  void everyCalculationOfBothExamplesEqualsTheCore() {
    for (int example : {1, 2}) {
      for (int type = 0; type <= 4; ++type) {
        Bench b;
        FrmFlash form(b.ctx);
        Button(&form, example == 1 ? "cmdSample1" : "cmdSample2")->click();
        Choose(form, type);
        Button(&form, "cmdGoCalc")->click();

        auto core = MakeSharedCalcState();
        RecordingDialogs quiet;
        core->Dialogs = &quiet;
        ResetFlashCase(*core);
        LoadFlashExample(*core, example);
        const FlashResult r =
            RunFlashCalculation(*core, type, core->Flash.FlashTemp, core->Flash.FlashPress);

        const QString where = QStringLiteral("example %1 type %2").arg(example).arg(type);
        QVERIFY2(form.VFLabel()->text() == Q(r.vfText), qPrintable(where));
        if (type == 0 || type == 1)
          QVERIFY2(form.TempBox()->text() == Q(r.temperatureText), qPrintable(where));
        if (type == 2 || type == 3)
          QVERIFY2(form.PressBox()->text() == Q(r.pressureText), qPrintable(where));
        for (int i = 1; i <= core->NC; ++i) {
          QVERIFY2(b.s.Flash.FlashX[i] == r.x[i] && b.s.Flash.FlashY[i] == r.y[i],
                   qPrintable(where));
          QVERIFY2(form.ResultGrid()->Text(2, i) == Q(r.yText[i]), qPrintable(where));
          QVERIFY2(form.ResultGrid()->Text(3, i) == Q(r.xText[i]), qPrintable(where));
          QVERIFY2(form.ResultGrid()->Text(4, i) == Q(r.kText[i]), qPrintable(where));
        }
        const int h = core->NC + 1;
        QVERIFY2(form.ResultGrid()->Text(1, h) == Q(r.hFeedText), qPrintable(where));
        QVERIFY2(form.ResultGrid()->Text(2, h) == Q(r.hVapourText), qPrintable(where));
        QVERIFY2(form.ResultGrid()->Text(3, h) == Q(r.hLiquidText), qPrintable(where));
        QCOMPARE(b.dialogs.messages, quiet.messages);
      }
    }
  }

  void loadShowsTheResetCaseAndTheSummaryLabels() {
    Bench b;
    b.s.LanguageFlag = 1;
    b.s.NC = 3;
    FrmFlash form(b.ctx);
    QCOMPARE(b.s.BatchMode, 2);
    QCOMPARE(form.windowTitle(), QStringLiteral("Flash Calculation"));
    QCOMPARE(b.s.NC, 0);
    QCOMPARE(form.findChild<QLabel*>(QStringLiteral("lblKValue"))->text(),
             QStringLiteral("1.Ideal(Antoine)"));
    QCOMPARE(form.findChild<QLabel*>(QStringLiteral("lblPressUnit"))->text(),
             QStringLiteral("mmHg"));
    // A sub-form called from the flash program labels the flash screen.
    b.ctx.hosts[0] = nullptr;
    FrmUnit unit(b.ctx);
    unit.PressList()->setCurrentIndex(0);
    unit.OkButton()->click();
    QCOMPARE(form.findChild<QLabel*>(QStringLiteral("lblPressUnit"))->text(),
             QStringLiteral("MPa"));
    FrmEnthalpy enthalpy(b.ctx);
    enthalpy.MethodList()->setCurrentIndex(0);
    enthalpy.OkButton()->click();
    QCOMPARE(form.findChild<QLabel*>(QStringLiteral("lblEnthalpy"))->text(),
             QStringLiteral("0.not Heatr Balance"));
  }

  void curveTypeRelabelsAndTheCurveIsTheCoresCurve() {
    Bench b;
    FrmFlash form(b.ctx);
    Button(&form, "cmdSample1")->click();
    form.show();
    Choose(form, 5);
    QCOMPARE(form.TempLabel()->text(), QStringLiteral("下限温度"));
    QVERIFY(form.Temp2Box()->isVisible());
    QVERIFY(!form.VFLabel()->isVisible());
    form.TempBox()->clear();

    auto core = MakeSharedCalcState();
    ResetFlashCase(*core);
    LoadFlashExample(*core, 1);
    const CondensingCurve expected = CalcCondensingCurve(*core, std::nullopt, std::nullopt, 760);
    const CurvePoint middle = CurvePointDetail(*core, expected, 101);

    bool opened = false;
    form.SetCurveHook([&](QDialog& dialog) {
      opened = true;
      auto& curve = static_cast<FrmFlashCondensingCurve&>(dialog);
      QCOMPARE(curve.Curve().tLow, expected.tLow);
      QCOMPARE(curve.Curve().tHigh, expected.tHigh);
      QCOMPARE(curve.Curve().vf, expected.vf);
      QVERIFY(curve.Curve().vf[1] < 1e-6);    // empty limits: from the bubble point ...
      QVERIFY(curve.Curve().vf[201] > 0.99);  // ... to the dew point
      curve.resize(900, 700);
      curve.show();
      QVERIFY(QTest::qWaitForWindowExposed(&curve));
      // A click on the middle column reads out point 101 into the grid and the boxes.
      const QRectF area = curve.Plot()->PlotArea();
      QTest::mouseClick(curve.Plot(), Qt::LeftButton, {},
                        curve.Plot()->mapFromParent(curve.Plot()->pos()) +
                            QPoint(qRound(area.center().x()), qRound(area.center().y())));
      QCOMPARE(curve.XBox()->text(), Q(middle.tText));
      QCOMPARE(curve.YBox()->text(), Q(middle.vfText));
      QCOMPARE(curve.PointGrid()->Text(3, 3), Q(middle.yText[3]));
      QCOMPARE(curve.PointGrid()->Text(1, 5), Q(middle.kText[1]));
      QTest::keyClick(&curve, Qt::Key_Escape);  // Escape leaves the screen
      QVERIFY(!curve.isVisible());
    });
    Button(&form, "cmdGoCalc")->click();
    QVERIFY(opened);

    // Equal limits: the message, and no curve.
    opened = false;
    form.TempBox()->setText(QStringLiteral("90"));
    form.Temp2Box()->setText(QStringLiteral("90"));
    Button(&form, "cmdGoCalc")->click();
    QVERIFY(!opened);
    QCOMPARE(b.dialogs.messages.size(), size_t{1});
    QVERIFY(b.dialogs.messages[0].starts_with("温度の上下限が逆転しています。 TL="));

    Choose(form, 0);
    QCOMPARE(form.TempLabel()->text(), QStringLiteral("温度"));
    QVERIFY(!form.Temp2Box()->isVisible());
    QVERIFY(form.VFLabel()->isVisible());
  }

  void feedCompositionIsEditedInTheFeedGrid() {
    Bench b;
    FrmFlash form(b.ctx);
    Button(&form, "cmdSample2")->click();
    QCOMPARE(form.FeedGrid()->Text(2, 3), QStringLiteral("0.5"));
    form.FeedGrid()->SetText(2, 3, QStringLiteral("0.4"));
    form.FeedGrid()->SetText(3, 3, QStringLiteral("abc"));
    QCOMPARE(b.s.Flash.FeedZ[2], 0.4);
    QCOMPARE(b.s.Flash.FeedZ[3], 0.0);
    QCOMPARE(form.FeedGrid()->Text(4, 1), QString());  // blanks below NC
  }

  void saveAndReadWithTheirQuestions() {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("case.dat"));
    Bench b;
    FrmFlash form(b.ctx);
    Button(&form, "cmdSample1")->click();
    form.TempBox()->setText(QStringLiteral("75.5"));
    b.files.answer = path;
    Button(&form, "cmdSaveData")->click();
    QVERIFY(QFile::exists(path));
    QCOMPARE(b.dialogs.messages.back(), std::string("[ case.dat ] を保存しますか？"));
    // Saving again asks about the existing file; No abandons.
    b.dialogs.preparedAnswers = {Answer::Yes, Answer::No};
    form.TempBox()->setText(QStringLiteral("60"));
    Button(&form, "cmdSaveData")->click();
    QCOMPARE(b.dialogs.messages.back(), std::string("[ case.dat ] が存在します。上書きしますか？"));

    Button(&form, "cmdSample2")->click();
    QCOMPARE(b.s.NC, 3);
    // Cancel in the question reads nothing.
    b.dialogs.preparedAnswers = {Answer::Cancel};
    Button(&form, "cmdReadData")->click();
    QCOMPARE(b.s.NC, 3);
    Button(&form, "cmdReadData")->click();
    QCOMPARE(b.dialogs.messages.back(), std::string("[ case.dat ] を読み込みます？"));
    QCOMPARE(b.s.NC, 4);
    QCOMPARE(b.s.Flash.FlashTemp, 75.5);
    QCOMPARE(form.TempBox()->text(), QStringLiteral("75.5"));
    QCOMPARE(form.FeedGrid()->Text(4, 1), QStringLiteral("1-Propanol"));

    // A file of another kind: the message, the case stays.
    const QString other = dir.filePath(QStringLiteral("other.dat"));
    QFile f(other);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("\"Batch Distillastion Data\"\r\n");
    f.close();
    b.files.answer = other;
    Button(&form, "cmdReadData")->click();
    QCOMPARE(b.dialogs.messages.back(), std::string("Flash計算のデータファイルではありません"));
    QCOMPARE(b.s.NC, 4);
  }

  void menuHandsOverToTheFlashProgramAndBack() {
    Bench b;
    QTemporaryDir dir;
    QSettings settings(dir.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
    shell::FrmMenu menu(b.ctx, settings);
    for (auto& [n, factory] : ProgramForms()) menu.SetProgramFactory(n, factory);
    menu.show();
    menu.ProgramButton(2)->click();
    QCOMPARE(b.s.ActiveProgram, 2);
    QCOMPARE(b.s.BatchMode, 2);
    QVERIFY(!menu.isVisible());
    QPointer<MainForm> flash = menu.OpenProgram();
    QVERIFY(flash && flash->isVisible());
    QCOMPARE(flash->objectName(), QStringLiteral("frmFlash"));
    Button(flash, "cmdExit")->click();
    QVERIFY(menu.isVisible());
    QTRY_VERIFY(flash.isNull());  // unloaded
  }
};

int RunFlashScreenTests(int argc, char** argv) {
  FlashScreenTest t;
  return QTest::qExec(&t, argc, argv);
}

#include "flash_screen_test.moc"
