#pragma once

class QWidget;

/// Makes a window large enough for what its layout holds now, never smaller; a greatest size gives
/// way, and a window of fixed size gets another fixed size. For windows with a minimum size of
/// their own, which takes the layout's minimum out of force: to be called on QEvent::Show and
/// QEvent::LayoutRequest, so that large fonts and long texts are not clipped.
void growToFit(QWidget& window);
