#include "libs/kestrel_wire/recording.h"
#include "workbench/text/logmodel.h"
#include "workbench/window/look/savefile.h"
#include "workbench/window/recording/csvexport.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using workbench::CsvExport;
using workbench::LogModel;

namespace {

constexpr int patience = 30000;
constexpr const char* tool =
    "6dmt2 1 1 [0 1.000 4 0.750][1 2 3][1 0 0 0 1 0 0 0 1][0][0 0 0 0 0 0]";

} // namespace

/// What a user sees of an export and of the question for a file.
class TestCsvExport : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<LogModel> m_log;

    QString file(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    QString log() const {
        QCoreApplication::processEvents();
        return m_log->toText();
    }

    QString write(const char* name, int frames, const char* rest = "") const {
        std::string text = kestrel_wire::formatRecordingHeader({"1", "2", "3", "m", {}});
        for (int i = 1; i <= frames; ++i) {
            text += kestrel_wire::formatRecord(static_cast<std::uint64_t>(i), tool);
        }
        QFile recording(file(name));
        if (recording.open(QIODevice::WriteOnly)) {
            recording.write((text + rest).c_str());
        }
        return recording.fileName();
    }

    // Carries out `act` in the modal dialog that opens next.
    template <typename Dialog>
    static void inNext(const std::function<void(Dialog&)>& act) {
        auto* const timer = new QTimer(qApp);
        timer->setInterval(10);
        QElapsedTimer waited;
        waited.start();
        connect(timer, &QTimer::timeout, timer, [timer, act, waited] {
            auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (dialog != nullptr && dialog->isVisible()) {
                timer->deleteLater();
                timer->stop();
                act(*dialog);
            } else if (waited.elapsed() > patience) {
                timer->deleteLater();
                timer->stop();
                if (QWidget* const stray = QApplication::activeModalWidget()) {
                    stray->close();
                }
            }
        });
        timer->start();
    }

    static void enter(QFileDialog& dialog, const QString& name) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
        QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
    }

    QString askFor(const QString& suggested) const {
        return workbench::askForFileToSave(
            {QStringLiteral("Title"), QStringLiteral("All (*)"), QStringLiteral("kestrel")},
            suggested, m_window.get());
    }

private Q_SLOTS:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init() {
        m_window = std::make_unique<QWidget>();
        m_log = std::make_unique<LogModel>();
        m_window->show();
    }
    void cleanup() {
        m_window.reset();
        m_log.reset();
    }

    void aNameWithoutASuffixGetsIt() {
        inNext<QFileDialog>([this](QFileDialog& dialog) { enter(dialog, file("plain")); });
        QCOMPARE(askFor(file("x.kestrel")), file("plain.kestrel"));
        inNext<QFileDialog>([this](QFileDialog& dialog) { enter(dialog, file("other.txt")); });
        QCOMPARE(askFor(file("x.kestrel")), file("other.txt"));
    }

    void theSuggestedNameIsThere() {
        inNext<QFileDialog>([](QFileDialog& dialog) {
            QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
        });
        QCOMPARE(askFor(file("suggested.kestrel")), file("suggested.kestrel"));
        inNext<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
        QCOMPARE(askFor(file("suggested.kestrel")), QString());
    }

    void whatExistsIsReplacedOnlyWhenTheUserAgrees_data() {
        QTest::addColumn<int>("answer");
        QTest::newRow("yes") << int(QMessageBox::Yes);
        QTest::newRow("no") << int(QMessageBox::No);
    }
    void whatExistsIsReplacedOnlyWhenTheUserAgrees() {
        QFETCH(int, answer);
        write("old.kestrel", 1);
        bool asked = false;
        inNext<QFileDialog>([&](QFileDialog& dialog) {
            inNext<QMessageBox>([&](QMessageBox& box) {
                asked = true;
                box.button(QMessageBox::StandardButton(answer))->click();
                if (answer == QMessageBox::No) {
                    QMetaObject::invokeMethod(&dialog, "reject", Qt::QueuedConnection);
                }
            });
            enter(dialog, file("old")); // with the suffix it exists
        });
        QCOMPARE(askFor(file("x.kestrel")),
                 answer == QMessageBox::Yes ? file("old.kestrel") : QString());
        QVERIFY(asked);
        QFile::remove(file("old.kestrel"));
    }

    void anExportIsWrittenAndTold() {
        CsvExport exporter(*m_log, m_window.get());
        QSignalSpy finished(&exporter, &CsvExport::finished);
        exporter.start(write("r.kestrel", 3), file("t.csv"));
        QVERIFY(exporter.isRunning());
        QVERIFY(finished.wait(patience));
        QCOMPARE(finished.first().first().toString(), QString());
        QVERIFY(!exporter.isRunning());
        QVERIFY(QFile::exists(file("t.csv")));
        QVERIFY(log().contains(QStringLiteral("Wrote 3 rows to ") + file("t.csv")));
        QVERIFY(m_window->findChild<QProgressDialog*>() == nullptr);
        QFile::remove(file("t.csv"));
    }

    void recordingAndTableAreAskedFor() {
        CsvExport exporter(*m_log, m_window.get());
        QSignalSpy finished(&exporter, &CsvExport::finished);
        const QString recording = write("a.b.kestrel", 2);
        inNext<QFileDialog>([&](QFileDialog& open) {
            inNext<QFileDialog>([](QFileDialog& save) {
                if (save.acceptMode() == QFileDialog::AcceptSave) {
                    QMetaObject::invokeMethod(&save, "accept", Qt::QueuedConnection);
                } else {
                    save.reject();
                }
            });
            open.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(recording);
            static_cast<void>(QMetaObject::invokeMethod(&open, "accept"));
        });
        exporter.ask();
        QVERIFY(finished.size() == 1 || finished.wait(patience));
        QVERIFY(QFile::exists(file("a.b.csv")));
        QFile::remove(file("a.b.csv"));
    }

    void theCancelButtonEndsItAndLeavesNothing_data() {
        QTest::addColumn<bool>("byEscape");
        QTest::newRow("button") << false;
        QTest::newRow("escape") << true;
    }
    void theCancelButtonEndsItAndLeavesNothing() {
        QFETCH(bool, byEscape);
        CsvExport exporter(*m_log, m_window.get());
        QSignalSpy finished(&exporter, &CsvExport::finished);
        exporter.start(write("r.kestrel", 400000), file("t.csv"));
        QPointer<QProgressDialog> dialog;
        QTRY_VERIFY_WITH_TIMEOUT(
            (dialog = m_window->findChild<QProgressDialog*>(), dialog && dialog->value() > 0),
            patience);
        dialog->show();
        if (byEscape) {
            QTest::keyClick(dialog, Qt::Key_Escape);
        } else {
            dialog->findChild<QPushButton*>()->click();
        }
        QVERIFY(finished.size() == 1 || finished.wait(patience));
        QVERIFY(finished.first().first().toString().contains(QStringLiteral("cancelled")));
        QCOMPARE(QDir(m_folder.path()).entryList({QStringLiteral("t.csv*")}), QStringList());
        QVERIFY(dialog.isNull());
        QVERIFY(log().contains(QStringLiteral("was cancelled")));
    }

    void aWindowThatGoesEndsIt() {
        auto* const exporter = new CsvExport(*m_log, m_window.get());
        exporter->start(write("r.kestrel", 400000), file("t.csv"));
        m_window.reset();
        QTRY_COMPARE_WITH_TIMEOUT(QDir(m_folder.path()).entryList({QStringLiteral("t.csv*")}),
                                  QStringList(), patience);
    }

    void faultsAreToldWithTheirLine() {
        CsvExport exporter(*m_log, m_window.get());
        QSignalSpy finished(&exporter, &CsvExport::finished);
        const QString damaged = write("r.kestrel", 3, "hello\n");
        exporter.start(damaged, file("t.csv"));
        QVERIFY(finished.wait(patience));
        QCOMPARE(finished.first().first().toString(),
                 QStringLiteral("%1 is damaged, line 10: unreadable time stamp; %2 has what is "
                                "before it")
                     .arg(damaged, file("t.csv")));
        QVERIFY(log().contains(finished.first().first().toString()));
        QVERIFY(QFile::remove(file("t.csv")));
        finished.clear();

        exporter.start(write("cut.kestrel", 1, "9 fr"), file("t.csv"));
        QVERIFY(finished.wait(patience));
        QCOMPARE(finished.first().first().toString(), QString());
        QVERIFY(log().contains(QStringLiteral("is cut and left out")));
        QVERIFY(QFile::remove(file("t.csv")));
        finished.clear();

        exporter.start(damaged, QStringLiteral("/no/such/folder/t.csv"));
        QVERIFY(finished.wait(patience));
        QVERIFY(
            finished.first().first().toString().contains(QStringLiteral("could not be written")));
        finished.clear();

        exporter.start(damaged, damaged);
        QCOMPARE(finished.size(), 1);
        QVERIFY(QFile(damaged).size() > 100);
    }
};

QTEST_MAIN(TestCsvExport)
#include "test_csvexport.moc"
