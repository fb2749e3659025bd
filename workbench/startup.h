#pragma once

namespace workbench {

/// What every program with the workbench's window does before it makes its QApplication: sizes that
/// follow the display's scaling, and no messages that mean nothing to users. To be called once.
void prepareForWindows();

} // namespace workbench
