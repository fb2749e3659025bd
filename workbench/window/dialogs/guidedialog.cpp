#include "workbench/window/dialogs/guidedialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace workbench {

namespace {

constexpr int guideWidth = 110; // characters
constexpr int guideHeight = 40; // lines

} // namespace

GuideDialog::GuideDialog(const QString& file, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("GuideDialog"));
    setWindowTitle(tr("User guide"));
    auto* const browser = new QTextBrowser(this);
    browser->setObjectName(QStringLiteral("textBrowser_guide"));
    browser->setAccessibleName(windowTitle());
    browser->setSource(QUrl::fromLocalFile(file), QTextDocument::MarkdownResource);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(tr("Close"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(browser);
    layout->addWidget(buttons);
    resize(guideWidth * fontMetrics().averageCharWidth(), guideHeight * fontMetrics().height());
}

QString GuideDialog::usualFile() {
    const QString file =
        QDir(QCoreApplication::applicationDirPath())
            .filePath(QStringLiteral("../" KESTREL_GUIDE_INSTALL_DIR "/user_guide.md"));
    return QFile::exists(file) ? QDir::cleanPath(file) : QString();
}

} // namespace workbench
