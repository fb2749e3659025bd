#include "workbench/text/textlanguage.h"

#include <QCoreApplication>

namespace workbench {

QString textLanguage() {
    return QCoreApplication::translate("workbench::textLanguage", "en",
                                       "the code of this language");
}

} // namespace workbench
