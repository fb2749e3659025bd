#pragma once

#include <QDialog>
#include <QString>

namespace workbench {

/// The user guide, beside the program's window. Pages and pictures are files; nothing is fetched.
class GuideDialog : public QDialog {
    Q_OBJECT

public:
    /// `file` is the guide as Markdown.
    explicit GuideDialog(const QString& file, QWidget* parent = nullptr);

    /// The guide of a build or an installation, see guideIn().
    static QString usualFile();

    /// The guide in `folder` that is in the language of the program's texts, else the English one;
    /// empty when there is none.
    static QString guideIn(const QString& folder);
};

} // namespace workbench
