#include "workbench/window/dialogs/opendialogs.h"

#include <QMessageBox>
#include <QtTest>

#include <memory>
#include <vector>

using workbench::OpenDialogs;

namespace {

constexpr int patience = 8000;

/// Stays when it is rejected.
class Stubborn : public QDialog {
public:
    int rejections = 0;
    void reject() override { ++rejections; }
};

/// Opens another one whenever it is rejected.
class Hydra : public QDialog {
public:
    explicit Hydra(std::vector<std::unique_ptr<Hydra>>& heads)
        : m_heads(heads) {}
    void reject() override {
        QDialog::reject();
        m_heads.push_back(std::make_unique<Hydra>(m_heads));
        m_heads.back()->show();
    }

private:
    std::vector<std::unique_ptr<Hydra>>& m_heads;
};

/// Asks before it goes.
class Asking : public QDialog {
public:
    bool sure = false;
    void reject() override {
        QMessageBox box(QMessageBox::Question, QString(), QStringLiteral("Sure?"),
                        QMessageBox::Yes | QMessageBox::No, this);
        sure = box.exec() == QMessageBox::Yes;
        QDialog::reject();
    }
};

} // namespace

class TestOpenDialogs : public QObject {
    Q_OBJECT

    static bool rejectAll(OpenDialogs& dialogs) {
        bool done = false;
        dialogs.rejectAll([&done] { done = true; });
        return QTest::qWaitFor([&done] { return done; }, patience);
    }

private Q_SLOTS:
    void withoutDialogsThereIsNothingToDo() {
        OpenDialogs dialogs;
        QVERIFY(!dialogs.any());
        QVERIFY(rejectAll(dialogs));
    }

    void nestedDialogsEndFromTheInsideEachWithTheCodeBehindIt() {
        QStringList events;
        QDialog outer;
        QDialog inner;
        OpenDialogs dialogs;
        connect(&outer, &QDialog::rejected, this, [&] { events += QStringLiteral("outer"); });
        connect(&inner, &QDialog::rejected, this, [&] { events += QStringLiteral("inner"); });
        QTimer::singleShot(0, &outer, [&] {
            QTimer::singleShot(
                0, &inner, [&] { dialogs.rejectAll([&] { events += QStringLiteral("done"); }); });
            inner.exec();
            events += QStringLiteral("behind inner");
        });
        outer.exec();
        events += QStringLiteral("behind outer");
        QTRY_VERIFY_WITH_TIMEOUT(events.contains(QStringLiteral("done")), patience);
        QCOMPARE(events, QStringList({"inner", "behind inner", "outer", "behind outer", "done"}));
    }

    void dialogsThatAreNotModalAreRejectedToo() {
        QDialog dialog;
        dialog.show();
        OpenDialogs dialogs;
        QVERIFY(dialogs.any());
        QVERIFY(rejectAll(dialogs));
        QVERIFY(!dialog.isVisible());
    }

    void aDialogThatAsksBackHasItsQuestionRejected() {
        Asking dialog;
        dialog.show();
        OpenDialogs dialogs;
        QVERIFY(rejectAll(dialogs));
        QVERIFY(!dialog.sure);
        QVERIFY(!dialog.isVisible());
    }

    void aDialogThatStaysHoldsNobodyUp() {
        Stubborn dialog;
        dialog.show();
        OpenDialogs dialogs;
        QVERIFY(rejectAll(dialogs));
        QCOMPARE(dialog.rejections, 1);
        QVERIFY(!dialogs.any());
        dialogs.rejectNow();
        QCOMPARE(dialog.rejections, 1);
    }

    void dialogsWithoutEndHoldNobodyUp() {
        std::vector<std::unique_ptr<Hydra>> heads;
        heads.push_back(std::make_unique<Hydra>(heads));
        heads.front()->show();
        OpenDialogs dialogs;
        dialogs.rejectNow();
        QVERIFY(heads.size() > 2);
        QVERIFY(!dialogs.any());
    }

    void allAreRejectedAtOnceWhereNoLoopRuns() {
        QDialog first;
        QDialog second;
        first.setModal(true);
        first.show();
        second.show();
        OpenDialogs dialogs;
        dialogs.rejectNow();
        QVERIFY(!first.isVisible());
        QVERIFY(!second.isVisible());
    }
};

QTEST_MAIN(TestOpenDialogs)
#include "test_opendialogs.moc"
