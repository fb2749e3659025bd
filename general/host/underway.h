#pragma once

class QObject;

/// What of a plug-in is on the stack, and the objects that have to wait until it is not. A host may
/// end a module from inside anything that the module asks it: the code that has asked still needs
/// its object when the answer comes. GUI thread only.
namespace underway {

/// Lives for as long as an operation of the host runs. At the end of the outermost one the event
/// loop gets what was retired meanwhile: by then the code that has asked is through.
class Operation {
public:
    Operation();
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;
};

/// Lives for as long as a modal loop of the plug-in runs.
class ModalLoop {
public:
    ModalLoop();
    ~ModalLoop();
    ModalLoop(const ModalLoop&) = delete;
    ModalLoop& operator=(const ModalLoop&) = delete;
};

/// Lives for as long as something is being ended. What is retired meanwhile is deleted at the end
/// of the outermost one or, within an operation, with what that operation leaves.
class Ending {
public:
    Ending();
    ~Ending();
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;
};

/// Whether an operation runs.
bool isOperation();

/// Deletes the object as soon as no code of its own can be on the stack. It has no parent any more;
/// others may delete it meanwhile.
void retire(QObject* object);

/// The plug-in's root object goes, and its library may go next: deletes what still waits for the
/// event loop. When code of the plug-in is on the stack that is impossible; then the library stays
/// mapped for good, and the event loop finishes the work.
void leave();

/// The plug-in's library stays mapped for good: something of it goes on that nobody waits for.
void keepMapped();

} // namespace underway
