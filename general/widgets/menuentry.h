#pragma once

struct _GuiElement;
class QObject;

/// The records that modules hand to the host. GUI thread only.
namespace menuentry {

/// A filled record forgets its widget and its action when they die, be it with the host's window.
/// The record lives as long as `module`.
void forgetWhenGone(_GuiElement& element, QObject* module);

} // namespace menuentry
