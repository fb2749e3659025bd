#pragma once

namespace workbench {

/// What every program with the workbench's window does before it makes its QApplication: sizes that
/// follow the display's scaling, memory that goes back to the system, and no messages that mean
/// nothing to users. To be called once.
void prepareForWindows();

} // namespace workbench
