#include "SourceFiles/doublespinboxdelegate.h"
#include "tests/support/datarows.h"

#include <QDoubleSpinBox>
#include <QStandardItemModel>
#include <QStyleOptionViewItem>
#include <QtTest>

class TestDoubleSpinboxDelegate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_parent = std::make_unique<QWidget>();
        m_model = std::make_unique<QStandardItemModel>(1, 1);
        m_editor = qobject_cast<QDoubleSpinBox*>(
            m_delegate.createEditor(m_parent.get(), QStyleOptionViewItem(), index()));
        QVERIFY(m_editor != nullptr);
    }

    void theEditorIsAChildOfTheGivenWidget() { QCOMPARE(m_editor->parentWidget(), m_parent.get()); }

    void theRangeIsSetWheneverEditingBegins() {
        for (int round = 0; round < 2; ++round) {
            m_editor->setRange(-5.0, 5.0);
            m_editor->setDecimals(4);
            m_editor->setSingleStep(2.0);
            m_delegate.setEditorData(m_editor, index());
            QCOMPARE(m_editor->minimum(), 0.0);
            QCOMPARE(m_editor->maximum(), 40.0);
            QCOMPARE(m_editor->decimals(), 1);
            QCOMPARE(m_editor->singleStep(), 0.1);
        }
    }

    void theTextOfTheCellOpensTheEditor_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        row("one decimal", "1.5", 1.5);
        row("two decimals", "2.34", 2.3);
        row("above the range", "41.0", 40.0);
        row("below the range", "-3.0", 0.0);
        row("no number", "wide", 0.0);
        row("a comma is no point", "1,5", 0.0);
        row("empty", "", 0.0);
        row("nan", "nan", 0.0);
        row("overflow", "1e999", 0.0);
    }
    void theTextOfTheCellOpensTheEditor() {
        QFETCH(QString, text);
        m_model->setData(index(), text);
        m_delegate.setEditorData(m_editor, index());
        QTEST(m_editor->value(), "value");
    }

    void aNumberInTheModelOpensTheEditorToo() {
        m_model->setData(index(), 12.5);
        m_delegate.setEditorData(m_editor, index());
        QCOMPARE(m_editor->value(), 12.5);
    }

    void theDisplayRoleIsWhatCounts() {
        QStandardItemModel* const model = m_model.get();
        model->setData(index(), "3.5", Qt::DisplayRole);
        model->setData(index(), "9.9", Qt::UserRole);
        m_delegate.setEditorData(m_editor, index());
        QCOMPARE(m_editor->value(), 3.5);
    }

    void aConfirmedValueIsStoredWithOneDecimalAndAPoint_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        row("two decimals", "2.34", "2.3");
        row("whole", "7", "7.0");
        row("above the range", "123.4", "40.0");
        row("no number", "x", "0.0");
    }
    void aConfirmedValueIsStoredWithOneDecimalAndAPoint() {
        QFETCH(QString, before);
        m_model->setData(index(), before);
        m_delegate.setEditorData(m_editor, index());
        m_delegate.setModelData(m_editor, m_model.get(), index());
        QTEST(m_model->data(index(), Qt::EditRole).toString(), "after");
    }

    void aTypedPointAndATypedCommaMeanTheSameInEveryLocale_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("typed");
        const QLocale german(QLocale::German, QLocale::Germany);
        const QLocale english(QLocale::English, QLocale::UnitedStates);
        row("German, comma", german, "3,5");
        row("German, point", german, "3.5");
        row("English, comma", english, "3,5");
        row("English, point", english, "3.5");
        row("C, comma", QLocale::c(), "3,5");
        row("of this run, point", QLocale(), "3.5");
    }
    void aTypedPointAndATypedCommaMeanTheSameInEveryLocale() {
        QFETCH(QLocale, locale);
        QFETCH(QString, typed);
        m_editor->setLocale(locale);
        m_delegate.setEditorData(m_editor, index());
        m_editor->selectAll();
        QTest::keyClicks(m_editor, typed);
        m_delegate.setModelData(m_editor, m_model.get(), index());
        QCOMPARE(m_model->data(index()).toString(), QString("3.5"));
    }

    void anEditorOfAnotherKindIsLeftAlone() {
        QWidget stranger;
        m_model->setData(index(), "1.5");
        m_delegate.setEditorData(&stranger, index());
        m_delegate.setModelData(&stranger, m_model.get(), index());
        QCOMPARE(m_model->data(index()).toString(), QString("1.5"));
    }

private:
    QModelIndex index() const { return m_model->index(0, 0); }

    DoubleSpinboxDelegate m_delegate{nullptr};
    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<QStandardItemModel> m_model;
    QDoubleSpinBox* m_editor = nullptr;
};

QTEST_MAIN(TestDoubleSpinboxDelegate)
#include "test_doublespinboxdelegate.moc"
