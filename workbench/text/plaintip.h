#pragma once

#include <QString>
#include <QTextDocument>

namespace workbench {

/// A tool tip that tells a text of somebody else as it is: nothing in it is taken for HTML.
inline QString plainTip(const QString& text) {
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
}

} // namespace workbench
