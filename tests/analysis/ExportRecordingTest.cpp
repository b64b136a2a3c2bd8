// Export and recording on the real main window: Ctrl+C copies the graph's picture in the
// colours and size chosen, Save Graph Image writes PNG and SVG files at the size chosen in its
// dialog, Save Traces as CSV writes the traces on screen whole (or says why not, leaving the
// file there as it was), and Record writes every frame taken in, each line on disk as soon as
// its frame came, until it is pressed again.
#include "AnalysisWindows.h"
#include "analysis/AnalysisActions.h"
#include "analysis/ExportActions.h"
#include "analysis/frmRecording.h"
#include "app/LiveWindowFixture.h"
#include "common/ModalWindows.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QSpinBox>
#include <cmath>

using namespace zorvik;
using zorvik::test::LiveWindowFixture;
using zorvik::test::ModalWindows;
using zorvik::test::squareCounts;
using zorvik::test::stateWith;

namespace {

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

class ExportOnTheWindow : public zorvik::test::AnalysisWindowFixture {
protected:
    AnalysisActions& actionsOn(frmMain& w) {
        AnalysisActions* actions = &analysisOn(w);
        actions->exports().setAskSaveFile(
            [this](QWidget*, const QString& title, const QString& suggested, const QString&) {
                asked.push_back(title);
                suggestions.push_back(suggested);
                return answer;
            });
        QApplication::setActiveWindow(&w);
        return *actions;
    }
    QString answer;
    QStringList asked;
    QStringList suggestions;
};

} // namespace

TEST_F(ExportOnTheWindow, CtrlCCopiesTheGraphInTheColoursAndSizeChosen) {
    frmMain& w = running();
    AnalysisActions& a = actionsOn(w);
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    QApplication::clipboard()->clear();
    QTest::keyClick(&w, Qt::Key_C, Qt::ControlModifier);
    QImage copied = QApplication::clipboard()->image();
    ASSERT_FALSE(copied.isNull());
    // At first the graph's size on screen and its own colours: a black plot area.
    EXPECT_EQ(copied.size(), w.panel().CWGraph1->size());
    EXPECT_EQ(QColor(copied.pixel(20, 20)), w.panel().CWGraph1->plotAreaColor());

    a.exports().setPicture(QSize(800, 500), PictureTheme::Light);
    QTest::keyClick(&w, Qt::Key_C, Qt::ControlModifier);
    copied = QApplication::clipboard()->image();
    EXPECT_EQ(copied.size(), QSize(800, 500));
    EXPECT_EQ(QColor(copied.pixel(20, 20)), QColor(255, 255, 255));
    // The trace is drawn in dark blue somewhere on the page.
    bool blue = false;
    for (int y = 0; y < copied.height() && !blue; ++y)
        for (int x = 0; x < copied.width() && !blue; ++x)
            blue = QColor(copied.pixel(x, y)) == QColor(0, 0, 170);
    EXPECT_TRUE(blue);
    // The graph on screen kept its own colours.
    EXPECT_EQ(w.panel().CWGraph1->plotAreaColor(), QColor(0, 0, 0));
    EXPECT_EQ(w.panel().CWGraph1->plotColor("CHa"), QColor(255, 255, 0));
}

TEST_F(ExportOnTheWindow, SaveGraphImageWritesPngAndSvgAtTheSizeChosenInItsDialog) {
    frmMain& w = running();
    AnalysisActions& a = actionsOn(w);
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    ModalWindows modal;
    modal.on<QDialog>([](QDialog& d) {
        EXPECT_EQ(d.windowTitle(), "Graph Image");
        d.findChild<QComboBox*>("cboTheme")->setCurrentIndex(1);
        d.findChild<QSpinBox*>("spnWidth")->setValue(640);
        d.findChild<QSpinBox*>("spnHeight")->setValue(400);
        d.accept();
    });
    answer = dir.filePath("picture.png");
    QTest::keyClick(&w, Qt::Key_G, Qt::ControlModifier);
    ASSERT_EQ(asked, QStringList{"Save Graph Image"});
    EXPECT_TRUE(suggestions.value(0).endsWith("/graph.png"));
    QImage png(answer);
    ASSERT_FALSE(png.isNull());
    EXPECT_EQ(png.size(), QSize(640, 400));
    EXPECT_EQ(QColor(png.pixel(30, 30)), QColor(255, 255, 255));
    // Kept for the next time, Ctrl+C included.
    EXPECT_EQ(a.exports().pictureSize(), QSize(640, 400));
    EXPECT_EQ(a.exports().pictureTheme(), PictureTheme::Light);

    answer = dir.filePath("drawing.svg");
    ASSERT_TRUE(a.exports().saveImage());
    const QByteArray svg = readAll(answer);
    EXPECT_TRUE(svg.startsWith("<?xml")) << svg.left(80).toStdString();
    EXPECT_TRUE(svg.contains("<svg")) << svg.left(400).toStdString();
    EXPECT_TRUE(svg.contains("width=\"")) << svg.left(400).toStdString();
    EXPECT_TRUE(svg.contains("viewBox=\"0 0 640 400\"")) << svg.left(600).toStdString();
    EXPECT_TRUE(svg.contains("<polyline") || svg.contains("<path")) << svg.size();
}

TEST_F(ExportOnTheWindow, SaveTracesAsCsvWritesTheTracesOnScreen) {
    frmMain& w = running();
    actionsOn(w);
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    w.panel().CWBStoreRef->setValue(true);
    answer = dir.filePath("traces"); // no extension: .csv is added
    QTest::keyClick(&w, Qt::Key_D, Qt::ControlModifier);
    ASSERT_EQ(asked, QStringList{"Save Traces as CSV"});
    const QList<QByteArray> lines = readAll(dir.filePath("traces.csv")).split('\n');
    ASSERT_GE(lines.size(), 128);
    EXPECT_EQ(lines[0], "# Zorvik traces");
    EXPECT_TRUE(lines[1].startsWith("# Saved: "));
    EXPECT_EQ(lines[2],
              "# Sample rate: " + QByteArray::fromStdString(w.model().acquisition.strSampleRate));
    EXPECT_EQ(lines[3], "# Sample interval: 1e-06 s");
    EXPECT_EQ(lines[4], "# Volts per count: 0.1587301 V");
    EXPECT_TRUE(lines.contains("# Reference: stored from the live trace"));
    const int header = static_cast<int>(lines.indexOf("time,live,reference"));
    ASSERT_GT(header, 4);
    ASSERT_EQ(lines.size(), header + 1 + 128 + 1); // and the last line's end
    EXPECT_TRUE(lines.last().isEmpty());
    for (int i = 0; i < 128; ++i) {
        const QList<QByteArray> f = lines[header + 1 + i].split(',');
        ASSERT_EQ(f.size(), 3);
        EXPECT_NEAR(f[0].toDouble(), i * 1e-6, 1e-12);
        EXPECT_EQ(f[1].toFloat(), w.model().sngChaVolts[static_cast<std::size_t>(i)]);
        EXPECT_EQ(f[2].toFloat(), w.model().sngRefVolts[static_cast<std::size_t>(i)]);
    }
}

TEST_F(ExportOnTheWindow, ACsvThatCannotBeWrittenSaysWhyAndLeavesTheFileThereAsItWas) {
    frmMain& w = running();
    AnalysisActions& a = actionsOn(w);
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    answer = dir.filePath("missing-folder/traces.csv");
    EXPECT_FALSE(a.exports().saveData());
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].text.startsWith("The traces could not be saved to \"" + answer))
        << messages[0].text.toStdString();
}

TEST_F(ExportOnTheWindow, WithoutATraceThereIsNothingToSaveAndTheUserIsToldSo) {
    frmMain& off = start();
    AnalysisActions& b = actionsOn(off);
    EXPECT_FALSE(b.exports().saveData());
    EXPECT_TRUE(asked.isEmpty());
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages.back().text, "There is no trace to save: switch POWER on, or load a "
                                    "reference with FILE.");
}

TEST_F(ExportOnTheWindow, RecordWritesEveryFrameTakenInEachOnDiskAsItComes) {
    frmMain& w = running();
    AnalysisActions& a = actionsOn(w);
    frmRecording& r = a.showRecording();
    r.setFolder(dir.path());
    r.setFormat(RecordFormat::Csv);
    r.setWithMeasurements(true);
    QApplication::setActiveWindow(&w);
    QTest::keyClick(&w, Qt::Key_R);
    ASSERT_TRUE(r.recording());
    EXPECT_TRUE(a.recordAction()->isChecked());
    EXPECT_TRUE(QFileInfo(r.path()).fileName().startsWith("zorvik-recording-"));
    EXPECT_TRUE(r.path().endsWith(".csv"));
    for (int n = 0; n < 5; ++n) {
        feed(stateWith(0x04, 3), squareCounts(21, static_cast<std::uint8_t>(31 + n)));
        // Read by another handle right after the frame: the line is already in the file.
        const QList<QByteArray> lines = readAll(r.path()).split('\n');
        ASSERT_EQ(lines.size(), 1 + (n + 1) + 1) << n;
        const QList<QByteArray> fields = lines[n + 1].split(',');
        ASSERT_EQ(fields.size(), 4 + 128 + 17);
        EXPECT_EQ(fields[0].toInt(), n);
        EXPECT_EQ(fields[2], "1e-06");
        EXPECT_EQ(fields[3], "0.1587301");
        // Volts of the frame: (count - 31) x volts per count; the high level here is n counts.
        EXPECT_EQ(fields[4 + 15].toFloat(), static_cast<float>(n) * 0.1587301f);
        EXPECT_EQ(fields[4 + 128].toFloat(), static_cast<float>(n) * 0.1587301f); // max
    }
    EXPECT_EQ(r.frames(), 5);
    QApplication::setActiveWindow(&w);
    QTest::keyClick(&w, Qt::Key_R);
    EXPECT_FALSE(r.recording());
    EXPECT_FALSE(a.recordAction()->isChecked());
    EXPECT_EQ(r.statusText(), "Stopped: 5 frames in \"" + r.path() + "\"");
    // Frames after the stop are not written.
    const QByteArray before = readAll(r.path());
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    EXPECT_EQ(readAll(r.path()), before);
}

TEST_F(ExportOnTheWindow, ARecordingInJsonLinesNeverReplacesAnotherAndKeepsUpWithABurst) {
    frmMain& w = running();
    AnalysisActions& a = actionsOn(w);
    frmRecording& r = a.showRecording();
    r.setFolder(dir.path());
    r.setFormat(RecordFormat::Jsonl);
    r.setWithMeasurements(false);
    ASSERT_TRUE(r.start());
    const QString first = r.path();
    // A burst of frames in one read of the port: every one is recorded.
    std::vector<std::uint8_t> burst;
    for (int n = 0; n < 40; ++n) {
        const auto f = zorvik::test::frameWithSamples(stateWith(0x04, 3), squareCounts(21, 41));
        burst.insert(burst.end(), f.begin(), f.end());
    }
    const int shownBefore = framesShown;
    fake.feed(burst);
    ASSERT_TRUE(QTest::qWaitFor([&] { return framesShown == shownBefore + 40; }, 5000))
        << framesShown - shownBefore;
    EXPECT_EQ(r.frames(), 40);
    r.stop();
    const QList<QByteArray> lines = readAll(first).split('\n');
    EXPECT_EQ(lines.size() - 1, r.frames());
    EXPECT_EQ(r.frames(), framesShown - shownBefore);
    const QJsonObject o = QJsonDocument::fromJson(lines[0]).object();
    EXPECT_EQ(o.value("index").toInt(-1), 0);
    EXPECT_EQ(o.value("volts").toArray().size(), 128);
    EXPECT_FALSE(o.contains("max"));
    // A second recording in the same second gets a name of its own.
    ASSERT_TRUE(r.start());
    EXPECT_NE(r.path(), first);
    r.stop();
    EXPECT_EQ(readAll(first).split('\n').size() - 1, lines.size() - 1);
}

TEST_F(ExportOnTheWindow, ARecordingIntoAFolderThatIsNotThereSaysSo) {
    frmMain& w = running();
    AnalysisActions& a = actionsOn(w);
    frmRecording& r = a.showRecording();
    r.setFolder(dir.filePath("nowhere"));
    EXPECT_FALSE(r.start());
    EXPECT_FALSE(r.recording());
    EXPECT_EQ(r.statusText(), "The folder \"" + dir.filePath("nowhere") + "\" does not exist.");
    EXPECT_EQ(r.findChild<QLabel*>("lblStatus")->text(), r.statusText());
}
