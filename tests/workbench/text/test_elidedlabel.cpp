#include "workbench/text/elidedlabel.h"

#include <QHelpEvent>
#include <QToolTip>
#include <QtTest>

using workbench::ElidedLabel;

/// A line that is cut tells itself whole when the mouse asks.
class TestElidedLabel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theToolTipIsTheTextThatIsCutNow_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("width"); // of the text's own, in percent
        QTest::addColumn<QString>("tip");
        QTest::newRow("with room") << "12 lost" << 110 << "";
        QTest::newRow("without") << "12 lost" << 60 << "12 lost";
        QTest::newRow("like HTML") << "<b>12</b> lost" << 60 << "&lt;b&gt;12&lt;/b&gt; lost";
    }
    void theToolTipIsTheTextThatIsCutNow() {
        QFETCH(QString, text);
        QFETCH(int, width);
        QFETCH(QString, tip);
        ElidedLabel label;
        label.resize(label.fontMetrics().horizontalAdvance(text) * width / 100, 30);
        label.show();
        QVERIFY(QTest::qWaitForWindowExposed(&label));
        label.setText(text); // is not painted yet
        QHelpEvent asked(QEvent::ToolTip, QPoint(1, 1), label.mapToGlobal(QPoint(1, 1)));
        QVERIFY(QCoreApplication::sendEvent(&label, &asked));
        QCOMPARE(QToolTip::isVisible() ? QToolTip::text() : QString(), tip);
    }

    void itNeverWidensItsWindow() {
        ElidedLabel label;
        const QSize empty = label.minimumSizeHint();
        label.setText(QString(1000, 'x'));
        QCOMPARE(label.minimumSizeHint(), empty);
    }
};

QTEST_MAIN(TestElidedLabel)
#include "test_elidedlabel.moc"
