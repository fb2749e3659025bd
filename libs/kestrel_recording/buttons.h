#pragma once

namespace kestrel_recording {

/// The first `count` buttons of a record as a number: those that are pressed, the first one in the
/// lowest bit.
inline unsigned pressedButtons(const int (&buttons)[16], int count) {
    unsigned pressed = 0;
    for (int i = 0; i < count; ++i) {
        pressed |= buttons[i] != 0 ? 1U << static_cast<unsigned>(i) : 0U;
    }
    return pressed;
}

} // namespace kestrel_recording
