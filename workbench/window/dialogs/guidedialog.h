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

    /// The guide of a build or an installation; empty when there is none.
    static QString usualFile();
};

} // namespace workbench
