#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

#include <memory>
#include <vector>

namespace workbench {

/// The texts of the program and of its modules in another language than the sources' English, for
/// as long as this object lives. Needs the application object, and must come before what shows
/// texts. Modules bring their catalogues along (`<any name>_<language>.qm`) and do not install them
/// themselves: the language is the host's choice.
class Translations {
public:
    /// `language` is a locale's name ("de", "de_AT"); empty stands for what the system prefers.
    /// The first of `folders` that has catalogues for it, or for the language without a country,
    /// counts; Qt's own texts come with them.
    Translations(const QString& language, const QStringList& folders);
    ~Translations();
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    /// The language of the texts: "en" when no catalogue is in use.
    QString language() const { return m_language; }

    /// Whether the texts are in `language`, with or without its country.
    bool isIn(const QString& language) const;

    /// Beside the programs of a build, and where catalogues are installed.
    static QStringList usualFolders();

private:
    bool loadAll(const QString& language, const QStringList& folders);
    void load(const QString& file);

    QString m_language;
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};

} // namespace workbench
