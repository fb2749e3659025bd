#include "general/widgets/spinboxes.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QtTest>

#include <memory>

namespace {

const QLocale german(QLocale::German, QLocale::Germany);
const QLocale english(QLocale::English, QLocale::UnitedStates);
const QLocale swiss(QLocale::German, QLocale::Switzerland);

// The locale of a session: what every widget made from now on begins with.
class Session {
public:
    explicit Session(const QLocale& locale) { QLocale::setDefault(locale); }
    ~Session() { QLocale::setDefault(m_before); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

private:
    QLocale m_before;
};

enum class Way { Typed, Pasted };

// Replaces what stands in a field, as a user does it, and confirms it.
void enter(QAbstractSpinBox& box, const QString& text, Way way) {
    box.selectAll();
    if (way == Way::Typed) {
        QTest::keyClicks(&box, text);
    } else {
        QApplication::clipboard()->setText(text);
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    }
    QTest::keyClick(&box, Qt::Key_Return);
}

void addSessions() {
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<bool>("pasted");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
}

void addRow(const char* text, const char* typed, const char* pasted) {
    const std::pair<const char*, QLocale> sessions[] = {
        {"C", QLocale::c()}, {"English", english}, {"German", german}, {"Swiss", swiss}};
    for (const auto& session : sessions) {
        QTest::addRow("%s, \"%s\" typed", session.first, text)
            << session.second << false << text << typed;
        QTest::addRow("%s, \"%s\" pasted", session.first, text)
            << session.second << true << text << pasted;
    }
}

} // namespace

class TestSpinBoxes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // From 2.0 in a field from 0.0 to 40.0 with one decimal. Key by key, what is refused leaves
    // what stands there; pasted, it is refused as a whole.
    void aPointAndACommaMeanTheSame_data() {
        addSessions();
        addRow("0.4", "0.4", "0.4");
        addRow("0,4", "0.4", "0.4");
        addRow(".4", "0.4", "0.4");
        addRow(",4", "0.4", "0.4");
        addRow("12.5", "12.5", "12.5");
        addRow("12,5", "12.5", "12.5");
        addRow("7", "7.0", "7.0");
        addRow("7,", "7.0", "7.0");
        addRow("7.", "7.0", "7.0");
        addRow("+3,5", "3.5", "3.5");
        addRow(" 3,5 ", "3.5", "3.5");
        addRow("1,25", "1.2", "2.0");
        addRow("1,234", "1.2", "2.0");
        addRow("1.234,5", "1.2", "2.0");
        addRow("1,234.5", "1.2", "2.0");
        addRow("3,,5", "3.5", "2.0");
        addRow("3.,5", "3.5", "2.0");
        addRow("41", "4.0", "2.0");
        addRow("-1", "2.0", "2.0");
        addRow("wide", "2.0", "2.0");
        addRow("nan", "2.0", "2.0");
        addRow("inf", "2.0", "2.0");
        addRow("3'5", "35.0", "2.0");
        addRow("", "2.0", "2.0");
    }
    void aPointAndACommaMeanTheSame() {
        QFETCH(QLocale, locale);
        QFETCH(bool, pasted);
        QFETCH(QString, text);
        const Session session(locale);
        DecimalSpinBox box;
        box.setRange(0.0, 40.0);
        box.setDecimals(1);
        box.setValue(2.0);
        enter(box, text, pasted ? Way::Pasted : Way::Typed);
        QTEST(box.text(), "shown");
        QCOMPARE(box.value(), box.text().toDouble());
    }

    void aMarkTypedOnTheMarkIsSteppedOver() {
        DecimalSpinBox box;
        box.setValue(1.5);
        box.setDecimals(1);
        auto* const line = box.findChild<QLineEdit*>();
        line->setCursorPosition(1);
        QTest::keyClicks(line, ",");
        QCOMPARE(line->text(), QString("1.5"));
        QCOMPARE(line->cursorPosition(), 2);
    }

    void marksInPrefixAndSuffixStand() {
        const Session session(german);
        DecimalSpinBox box;
        box.setPrefix(QStringLiteral("ca. "));
        box.setSuffix(QStringLiteral(" mm, approx."));
        box.setDecimals(1);
        auto* const line = box.findChild<QLineEdit*>();
        line->setSelection(4, 3);
        QTest::keyClicks(line, "7,5");
        QTest::keyClick(line, Qt::Key_Return);
        QCOMPARE(box.text(), QString("ca. 7.5 mm, approx."));
        QCOMPARE(box.value(), 7.5);
    }

    void aTextHandedInIsReadWithEitherMark() {
        for (const QLocale& locale : {english, german}) {
            DecimalSpinBox box;
            box.setLocale(locale); // a program may choose to show another mark
            QCOMPARE(box.valueFromText("2.5"), 2.5);
            QCOMPARE(box.valueFromText("2,5"), 2.5);
        }
    }

    void aWholeNumberIsNeverMadeOfWhatStandsBehindAMark_data() {
        addSessions();
        addRow("45", "45", "45");
        addRow("10.5", "10", "30");
        addRow("10,5", "10", "30");
        addRow("10.", "10", "10");
        addRow("10,", "10", "10");
        addRow("1,0", "30", "30");
        addRow("1.234", "30", "30");
        addRow("10,,5", "10", "30");
        addRow(".45", "45", "30");
        addRow("wide", "30", "30");
    }
    void aWholeNumberIsNeverMadeOfWhatStandsBehindAMark() {
        QFETCH(QLocale, locale);
        QFETCH(bool, pasted);
        QFETCH(QString, text);
        const Session session(locale);
        WholeSpinBox box;
        box.setRange(10, 120);
        box.setValue(30);
        enter(box, text, pasted ? Way::Pasted : Way::Typed);
        QTEST(box.text(), "shown");
        QCOMPARE(box.value(), box.text().toInt());
    }
};

QTEST_MAIN(TestSpinBoxes)
#include "test_spinboxes.moc"
