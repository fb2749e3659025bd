#include "tests/support/datarows.h"
#include "workbench/translations.h"
#include "workbench/window/dialogs/guidedialog.h"
#include "workbench/window/mainwindow.h"

#include <QAction>
#include <QDialog>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocument>
#include <QtTest>

#include <vector>

using workbench::GuideDialog;
using workbench::MainWindow;
using workbench::Translations;

namespace {

constexpr int patience = 8000;
constexpr int leastPictures = 10;
constexpr int leastLinks = 5;

QString fileName(const QString& file) {
    return QFileInfo(file).fileName();
}

// What has a format of this kind, each with the place where it begins.
template <typename Condition>
std::vector<QTextFragment> fragments(const QTextDocument& document, Condition isMeant) {
    std::vector<QTextFragment> found;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            if (isMeant(part.fragment().charFormat())) {
                found.push_back(part.fragment());
            }
        }
    }
    return found;
}

QRect placeOf(const QTextBrowser& browser, int position) {
    QTextCursor cursor(browser.document());
    cursor.setPosition(position);
    return browser.cursorRect(cursor);
}

QTextBlock headingOf(const QTextDocument& document, const QString& text) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0 && block.text() == text) {
            return block;
        }
    }
    return {};
}

void addLanguages() {
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("title");
    row("English", "en", "User guide");
    row("German", "de", "Benutzerhandbuch");
}

} // namespace

class TestGuideDialog : public QObject {
    Q_OBJECT

    static QStringList catalogues() { return {QStringLiteral(KESTREL_TRANSLATIONS_DIR)}; }

private Q_SLOTS:
    void itOpensInTheLanguageOfTheProgramWithItsPictures_data() { addLanguages(); }
    void itOpensInTheLanguageOfTheProgramWithItsPictures() {
        QFETCH(QString, language);
        QFETCH(QString, title);
        const Translations translations(language, catalogues());
        const QTemporaryDir folder;
        MainWindow window({folder.filePath(QStringLiteral("s.ini")), false, false});
        window.show();
        auto* const action = window.findChild<QAction*>(QStringLiteral("actionGuide"));
        QCOMPARE(action->shortcut(), QKeySequence(Qt::Key_F1));
        action->trigger();
        const auto* const guide = window.findChild<QDialog*>(QStringLiteral("GuideDialog"));
        QVERIFY(guide != nullptr);
        QVERIFY(guide->isVisible());
        QVERIFY(!guide->isModal());
        QCOMPARE(guide->windowTitle(), title);
        const auto* const browser = guide->findChild<QTextBrowser*>();
        QCOMPARE(browser->document()->begin().text(), title);
        const auto pictures = fragments(*browser->document(),
                                        [](const auto& format) { return format.isImageFormat(); });
        QVERIFY(pictures.size() >= leastPictures);
        for (const QTextFragment& picture : pictures) {
            const QString name = picture.charFormat().toImageFormat().name();
            QVERIFY2(
                browser->document()->resource(QTextDocument::ImageResource, QUrl(name)).isValid(),
                qPrintable(name));
        }
        action->trigger();
        QCOMPARE(window.findChildren<QDialog*>(QStringLiteral("GuideDialog")).size(), 1);
        window.close();
        QTRY_VERIFY_WITH_TIMEOUT(!window.isVisible(), patience);
    }

    void aClickOnALinkLeadsToItsHeading_data() { addLanguages(); }
    void aClickOnALinkLeadsToItsHeading() {
        QFETCH(QString, language);
        const Translations translations(language, catalogues());
        GuideDialog dialog(GuideDialog::guideIn(QStringLiteral(DOCS_FOLDER)));
        dialog.show();
        auto* const browser = dialog.findChild<QTextBrowser*>();
        const auto links = fragments(*browser->document(), [](const auto& format) {
            return format.anchorHref().startsWith(QLatin1Char('#'));
        });
        QVERIFY(links.size() >= leastLinks);
        for (const QTextFragment& link : links) {
            const QTextBlock heading = headingOf(*browser->document(), link.text());
            QVERIFY2(heading.isValid(), qPrintable(link.text()));
            browser->verticalScrollBar()->setValue(0);
            QTextCursor cursor(browser->document());
            cursor.setPosition(link.position() + 1);
            browser->setTextCursor(cursor); // scrolls there
            const auto isInSight = [&] {
                return browser->viewport()->rect().contains(
                    placeOf(*browser, heading.position()).center());
            };
            QTRY_VERIFY_WITH_TIMEOUT(browser->viewport()->rect().contains(
                                         placeOf(*browser, link.position() + 1).center()),
                                     patience);
            QTest::mouseClick(browser->viewport(), Qt::LeftButton, {},
                              placeOf(*browser, link.position() + 1).center());
            QTRY_VERIFY2_WITH_TIMEOUT(isInSight(), qPrintable(link.text()), patience);
        }
    }

    void aLanguageWithoutAGuideGetsTheEnglishOne() {
        const QTemporaryDir folder;
        const Translations german(QStringLiteral("de"), catalogues());
        QCOMPARE(GuideDialog::guideIn(folder.path()), QString());
        QVERIFY(QFile::copy(QStringLiteral(DOCS_FOLDER "/user_guide.md"),
                            folder.filePath(QStringLiteral("user_guide.md"))));
        QCOMPARE(fileName(GuideDialog::guideIn(folder.path())), QStringLiteral("user_guide.md"));
        QVERIFY(QFile::copy(QStringLiteral(DOCS_FOLDER "/user_guide.de.md"),
                            folder.filePath(QStringLiteral("user_guide.de.md"))));
        QCOMPARE(fileName(GuideDialog::guideIn(folder.path())), QStringLiteral("user_guide.de.md"));
    }
};

QTEST_MAIN(TestGuideDialog)
#include "test_guidedialog.moc"
