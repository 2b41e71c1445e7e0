// The screen toolkit: grid, runner, dialogs bridge, plot panel.
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>
#include <atomic>
#include <thread>

#include "screen_test_support.h"
#include "screens/calc_grid.h"
#include "screens/calc_runner.h"
#include "screens/chart_panel.h"
#include "screens/qt_dialogs.h"
#include "screens/shared_subforms.h"

using namespace tervale;
using namespace tervale::screens;
using namespace tervale::screens::testing;

class ToolkitTest : public QObject {
  Q_OBJECT

 private slots:
  void pasteOfABlockIntoTheComponentGrid() {
    Bench b;
    FrmComponent form(b.ctx);
    CalcGrid* grid = form.Grid();
    // Four rows of three columns as a spreadsheet program copies them (CRLF, tabs).
    const QString block = QStringLiteral(
        "Methanol\t32.04\t512.6\r\nEthanol\t46.07\t513.9\r\nWater\t18.015\t647.3\r\n"
        "1-Propanol\t60.1\t536.8\r\n");
    QApplication::clipboard()->setText(block);
    grid->setCurrentCell(0, 0);
    QTest::keySequence(grid, QKeySequence::Paste);
    QCOMPARE(grid->Text(1, 1), QStringLiteral("Methanol"));
    QCOMPARE(grid->Text(4, 1), QStringLiteral("1-Propanol"));
    QCOMPARE(grid->Number(3, 2), 18.015);
    QCOMPARE(grid->Number(4, 3), 536.8);
    QVERIFY(grid->Text(5, 1).isEmpty());
    QVERIFY(grid->Text(1, 4).isEmpty());
    form.OkButton()->click();
    QCOMPARE(b.s.NC, 4);
    QCOMPARE(b.s.Comp.CompName[2], std::string("Ethanol"));
    QCOMPARE(b.s.Comp.CompMW[4], 60.1);
    QCOMPARE(b.s.Comp.CompTc[3], 647.3);
    QCOMPARE(b.host.nc, 4);

    // Copy gives the block back as tab-separated lines.
    grid->setRangeSelected(QTableWidgetSelectionRange(0, 0, 3, 2), true);
    QTest::keySequence(grid, QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text(), block);
  }

  void pasteStaysInsideTheGridAndSkipsReadOnlyCells() {
    CalcGrid grid(3, 3);
    grid.SetColumnReadOnly(1, true);
    grid.SetText(1, 1, QStringLiteral("fixed"));
    const int written = grid.PasteText(QStringLiteral("a\tb\tc\td\ne\tf\tg\th\n"), 1, 1);
    QCOMPARE(written, 4);  // column 1 read-only, column 4 beyond the grid
    QCOMPARE(grid.Text(1, 1), QStringLiteral("fixed"));
    QCOMPARE(grid.Text(1, 2), QStringLiteral("b"));
    QCOMPARE(grid.Text(2, 3), QStringLiteral("g"));
  }

  void lenientNumbersAndEnterMovesDown() {
    CalcGrid grid(3, 2);
    grid.SetText(1, 1, QStringLiteral("abc"));
    grid.SetText(2, 1, QStringLiteral(" 1.5E+2 "));
    double v = -1;
    QVERIFY(!grid.Number(3, 1, v));  // empty: the caller keeps its default
    QCOMPARE(grid.Number(1, 1), 0.0);
    QCOMPARE(grid.Number(2, 1), 150.0);
    grid.show();
    grid.setCurrentCell(0, 1);
    QTest::keyClick(&grid, Qt::Key_Return);
    QCOMPARE(grid.currentRow(), 1);
    QTest::keyClick(&grid, Qt::Key_7);  // typing starts an edit
    auto* editor = grid.findChild<QLineEdit*>();
    QVERIFY(editor != nullptr);
    editor->setText(QStringLiteral("7"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(grid.Text(2, 2), QStringLiteral("7"));  // committed (queued by the delegate)
    QTRY_COMPARE(grid.currentRow(), 2);
  }

  void runnerReportsAppliesChangesBetweenStepsAndStops() {
    CalcRunner runner;
    runner.SetProgressInterval(0);
    QSignalSpy progress(&runner, &CalcRunner::progress);
    QSignalSpy finished(&runner, &CalcRunner::finished);
    std::atomic<int> steps{0};
    double increment = 1;  // changed only between steps, on the worker
    double total = 0;
    bool changeSeenAtFirstStep = false;
    runner.Pause();  // a change screen is open before the first step
    runner.PostChange([&] { increment = 2; });
    QVERIFY(runner.Start([&](RunControl& run) {
      for (int i = 0; i < 1000000; ++i) {
        if (!run.Yield(i / 1000000.0, "step")) return;
        if (i == 0) changeSeenAtFirstStep = increment == 2;
        total += increment;
        ++steps;
        if (steps == 10) QThread::msleep(1);
      }
    }));
    QVERIFY(!runner.Start([](RunControl&) {}));  // one run at a time
    QTest::qWait(20);
    QCOMPARE(steps.load(), 0);  // held at its first yield
    runner.Resume();
    QTRY_VERIFY(steps.load() > 10);
    runner.RequestStop();
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(runner.Wait(5000));
    QCOMPARE(finished.at(0).at(0).toBool(), true);
    QVERIFY(changeSeenAtFirstStep);
    QCOMPARE(total, 2.0 * steps.load());
    QVERIFY(progress.count() >= 1);
    QCOMPARE(progress.at(0).at(1).toString(), QStringLiteral("step"));
    QVERIFY(!runner.IsRunning());

    // A run that ends by itself reports that it was not stopped; an exception is an error.
    QVERIFY(runner.Start([](RunControl& run) { run.Yield(1.0); }));
    QTRY_COMPARE(finished.count(), 2);
    QCOMPARE(finished.at(1).at(0).toBool(), false);
    QVERIFY(runner.Start([](RunControl&) { throw std::runtime_error("bad case"); }));
    QTRY_COMPARE(finished.count(), 3);
    QCOMPARE(finished.at(2).at(1).toString(), QStringLiteral("bad case"));
  }

  void dialogsFromACalculationThreadRunOnTheGuiThread() {
    QtUserDialogs dialogs;
    QThread* shownOn = nullptr;
    QString shownText;
    dialogs.SetPresenter([&](const QString& text, Buttons b, bool question) {
      shownOn = QThread::currentThread();
      shownText = text;
      return question ? Answer::No : Answer::Ok;
    });
    std::atomic<bool> done{false};
    Answer answer = Answer::Ok;
    std::thread worker([&] {
      answer = dialogs.Ask("続けますか？", Buttons::YesNoCancel);
      done = true;
    });
    QTRY_VERIFY(done.load());
    worker.join();
    QCOMPARE(answer, Answer::No);
    QCOMPARE(shownOn, QThread::currentThread());
    QCOMPARE(shownText, QStringLiteral("続けますか？"));
    // Through the state, as the calculations call it.
    Bench b;
    b.s.Dialogs = &dialogs;
    ShowMessage(b.s, BiText{"done", "終了"});
    QCOMPARE(shownText, QStringLiteral("終了"));
  }

  void plotPanelReadsOutClicksAndExports() {
    ChartPanel panel;
    panel.resize(640, 420);
    panel.SetTitle(QStringLiteral("凝縮曲線"));
    panel.SetXAxis(ChartAxis{QStringLiteral("Temp"), 50, 150});
    panel.SetLeftAxis(ChartAxis{QStringLiteral("V/F"), 0, 1});
    panel.SetRightAxis(ChartAxis{QStringLiteral("Enthalpy"), 1, 1e4, true});
    const std::vector<double> x{50, 100, 150}, y{0, 0.5, 1}, h{10, 100, 1000};
    panel.SetSeries(QStringLiteral("V/F"), Qt::blue, Scale::Left, x, y);
    panel.SetSeries(QStringLiteral("H"), Qt::red, Scale::Right, x, h);
    panel.AddVerticalMark(80, QStringLiteral("Bubble"), Qt::darkGreen);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QSignalSpy clicked(&panel, &ChartPanel::pointClicked);
    const QRectF area = panel.PlotArea();
    QTest::mouseClick(&panel, Qt::LeftButton, {},
                      QPoint(qRound(area.left() + area.width() * 0.25), qRound(area.center().y())));
    QCOMPARE(clicked.count(), 1);
    QVERIFY(qAbs(clicked.at(0).at(0).toDouble() - 75.0) < 0.5);
    QVERIFY(qAbs(panel.PixelAtX(75.0) - (area.left() + area.width() * 0.25)) < 1e-9);
    // Outside the plot area nothing is read out.
    QTest::mouseClick(&panel, Qt::LeftButton, {}, QPoint(2, 2));
    QCOMPARE(clicked.count(), 1);

    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("curve.png"));
    const QString svg = dir.filePath(QStringLiteral("curve.svg"));
    QVERIFY(panel.ExportPng(png));
    QVERIFY(panel.ExportSvg(svg));
    QImage image(png);
    QVERIFY(image.width() >= 400 && image.height() >= 300);
    QFile f(svg);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QVERIFY(f.readAll().contains("<svg"));
  }
};

int RunToolkitTests(int argc, char** argv) {
  ToolkitTest t;
  return QTest::qExec(&t, argc, argv);
}

#include "toolkit_test.moc"
