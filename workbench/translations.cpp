#include "workbench/translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace workbench {

namespace {

QString withoutCountry(const QString& language) {
    return language.section(QLatin1Char('_'), 0, 0);
}

// "de-AT" and "de_AT.UTF-8" mean the same.
QString normalised(QString language) {
    return language.section(QLatin1Char('.'), 0, 0).replace(QLatin1Char('-'), QLatin1Char('_'));
}

bool isEnglish(const QString& language) {
    return withoutCountry(language) == QLatin1String("en") || language == QLatin1String("C");
}

} // namespace

Translations::Translations(const QString& language, const QStringList& folders)
    : m_language(QStringLiteral("en")) {
    const QStringList wanted =
        language.isEmpty() ? QLocale::system().uiLanguages() : QStringList(language);
    for (const QString& name : wanted) {
        const QString candidate = normalised(name);
        if (isEnglish(candidate) || loadAll(candidate, folders) ||
            loadAll(withoutCountry(candidate), folders)) {
            return;
        }
    }
}

Translations::~Translations() {
    for (const auto& translator : m_translators) {
        QCoreApplication::removeTranslator(translator.get());
    }
}

bool Translations::isIn(const QString& language) const {
    return withoutCountry(normalised(language)) == withoutCountry(m_language);
}

QStringList Translations::usualFolders() {
    const QDir programs(QCoreApplication::applicationDirPath());
    return {programs.filePath(QStringLiteral("../translations")),
            programs.filePath(QStringLiteral("../" KESTREL_TRANSLATIONS_INSTALL_DIR))};
}

bool Translations::loadAll(const QString& language, const QStringList& folders) {
    static const QRegularExpression name(QStringLiteral("^[A-Za-z]+(_[A-Za-z]+)*$"));
    if (!name.match(language).hasMatch()) {
        return false; // it becomes part of a pattern for files
    }
    for (const QString& path : folders) {
        const QDir folder(path);
        const QStringList files =
            folder.entryList({QStringLiteral("*_%1.qm").arg(language)}, QDir::Files, QDir::Name);
        std::for_each(files.begin(), files.end(),
                      [&](const QString& file) { load(folder.filePath(file)); });
        if (!m_translators.empty()) {
            load(QDir(QLibraryInfo::location(QLibraryInfo::TranslationsPath))
                     .filePath(QStringLiteral("qtbase_%1.qm").arg(language)));
            m_language = language;
            return true;
        }
    }
    return false;
}

void Translations::load(const QString& file) {
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(file)) {
        QCoreApplication::installTranslator(translator.get());
        m_translators.push_back(std::move(translator));
    }
}

} // namespace workbench
