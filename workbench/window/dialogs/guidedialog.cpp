#include "workbench/window/dialogs/guidedialog.h"

#include "workbench/text/textlanguage.h"
#include "workbench/window/look/dialogroom.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>
#include <QVBoxLayout>

namespace workbench {

namespace {

constexpr int guideWidth = 110; // characters
constexpr int guideHeight = 40; // lines

// What a link to this heading says behind "#".
QString anchorOf(const QString& heading) {
    QString anchor;
    for (const QChar letter : heading) {
        if (letter == QLatin1Char(' ')) {
            anchor += QLatin1Char('-');
        } else if (letter.isLetterOrNumber() || letter == QLatin1Char('-')) {
            anchor += letter.toLower();
        }
    }
    return anchor;
}

// Qt's reader of Markdown gives headings no names that a link could lead to.
void nameHeadings(QTextDocument& document) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0) {
            QTextCharFormat name;
            name.setAnchor(true);
            name.setAnchorNames({anchorOf(block.text())});
            QTextCursor cursor(block);
            cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(name);
        }
    }
}

} // namespace

GuideDialog::GuideDialog(const QString& file, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("GuideDialog"));
    setWindowTitle(tr("User guide"));
    auto* const browser = new QTextBrowser(this);
    browser->setObjectName(QStringLiteral("textBrowser_guide"));
    browser->setAccessibleName(windowTitle());
    browser->setSource(QUrl::fromLocalFile(file), QTextDocument::MarkdownResource);
    nameHeadings(*browser->document());
    browser->setOpenLinks(false); // which would load the guide anew, without these names
    connect(browser, &QTextBrowser::anchorClicked, browser,
            [browser](const QUrl& link) { browser->scrollToAnchor(link.fragment()); });
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(tr("Close"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(browser);
    layout->addWidget(buttons);
    resize(guideWidth * fontMetrics().averageCharWidth(), guideHeight * fontMetrics().height());
    new DialogRoom(*this);
}

QString GuideDialog::usualFile() {
    return guideIn(QDir(QCoreApplication::applicationDirPath())
                       .filePath(QStringLiteral("../" KESTREL_GUIDE_INSTALL_DIR)));
}

QString GuideDialog::guideIn(const QString& folder) {
    const QDir guides(folder);
    for (const QString& name : {QStringLiteral("user_guide.%1.md").arg(textLanguage()),
                                QStringLiteral("user_guide.md")}) {
        if (guides.exists(name)) {
            return QDir::cleanPath(guides.filePath(name));
        }
    }
    return {};
}

} // namespace workbench
