#include "workbench/translations.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QTemporaryDir>
#include <QtTest>

using workbench::Translations;

namespace {

QStringList folders() {
    return {QStringLiteral(KESTREL_TRANSLATIONS_DIR)};
}

QString textOfTheProgram() {
    return QCoreApplication::translate("MainWindow", "&Quit");
}

QString textOfTheModule() {
    return QCoreApplication::translate("MtCalibrationDlgClass", "&Calibrate");
}

} // namespace

class TestTranslations : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void textsOfProgramAndModuleAreInTheLanguageAskedFor() {
        const Translations german(QStringLiteral("de"), folders());
        QCOMPARE(german.language(), QStringLiteral("de"));
        QCOMPARE(textOfTheProgram(), QStringLiteral("&Beenden"));
        QCOMPARE(textOfTheModule(), QStringLiteral("&Kalibrieren"));
    }

    // For the dialogs that are Qt's: those for files, the buttons of message boxes.
    void textsOfQtItselfAreInTheLanguageAskedFor() {
        const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
        if (!QFile::exists(folder + QStringLiteral("/qtbase_de.qm"))) {
            // QSKIP wants one argument more than C++17 lets it have.
            QTest::qSkip("the package qttranslations5-l10n is not installed", __FILE__, __LINE__);
            return;
        }
        const auto textOfQt = [] {
            return QCoreApplication::translate("QFileDialog", "File &name:");
        };
        QCOMPARE(textOfQt(), QStringLiteral("File &name:"));
        const Translations german(QStringLiteral("de"), folders());
        QCOMPARE(textOfQt(), QStringLiteral("Datei&name:"));
    }

    void textsAreEnglishAgainAfterwards() {
        { const Translations german(QStringLiteral("de"), folders()); }
        QCOMPARE(textOfTheProgram(), QStringLiteral("&Quit"));
        QCOMPARE(textOfTheModule(), QStringLiteral("&Calibrate"));
    }

    void aCountryWithoutCatalogueGetsItsLanguage_data() {
        QTest::addColumn<QString>("language");
        QTest::newRow("underscore") << "de_AT";
        QTest::newRow("hyphen") << "de-CH";
        QTest::newRow("with character set") << "de_DE.UTF-8";
    }
    void aCountryWithoutCatalogueGetsItsLanguage() {
        QFETCH(QString, language);
        const Translations german(language, folders());
        QCOMPARE(german.language(), QStringLiteral("de"));
        QVERIFY(german.isIn(language));
        QCOMPARE(textOfTheProgram(), QStringLiteral("&Beenden"));
    }

    void withoutCatalogueTextsAreEnglish_data() {
        QTest::addColumn<QString>("language");
        QTest::addColumn<bool>("isIn");
        QTest::newRow("English") << "en" << true;
        QTest::newRow("English with country") << "en_GB" << true;
        QTest::newRow("unknown") << "xx" << false;
        QTest::newRow("pattern") << "*" << false;
    }
    void withoutCatalogueTextsAreEnglish() {
        QFETCH(QString, language);
        QFETCH(bool, isIn);
        const Translations translations(language, folders());
        QCOMPARE(translations.language(), QStringLiteral("en"));
        QCOMPARE(translations.isIn(language), isIn);
        QCOMPARE(textOfTheProgram(), QStringLiteral("&Quit"));
    }

    void theSystemDecidesWhenNoLanguageIsAskedFor() {
        const QString first = QLocale::system().uiLanguages().value(0);
        const Translations translations(QString(), folders());
        QCOMPARE(translations.language(), first.startsWith(QLatin1String("de"))
                                              ? QStringLiteral("de")
                                              : QStringLiteral("en"));
    }

    void theFirstFolderThatHasCataloguesCounts() {
        const QTemporaryDir empty;
        const Translations german(QStringLiteral("de"), {empty.path(), folders().constFirst()});
        QCOMPARE(german.language(), QStringLiteral("de"));
    }

    void aDamagedCatalogueIsLeftOut() {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("broken_de.qm")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("not a catalogue");
        file.close();
        const Translations translations(QStringLiteral("de"), {folder.path()});
        QCOMPARE(translations.language(), QStringLiteral("en"));
    }
};

QTEST_GUILESS_MAIN(TestTranslations)
#include "test_translations.moc"
