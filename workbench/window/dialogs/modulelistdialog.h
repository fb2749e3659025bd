#pragma once

#include "workbench/outlets/sending/channelmaker.h"

#include <QDialog>
#include <QVector>

#include <vector>

namespace workbench {

struct ModuleInfo;

/// Lists the modules that were found, and the ways of sending data that are files of their own:
/// name, version, state in words, file.
class ModuleListDialog : public QDialog {
    Q_OBJECT

public:
    ModuleListDialog(const QVector<ModuleInfo>& modules, const std::vector<ChannelMaker::Way>& ways,
                     QWidget* parent = nullptr);
};

} // namespace workbench
