#include "general/host/underway.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <dlfcn.h>
#include <utility>

namespace underway {

namespace {

using Objects = QList<QPointer<QObject>>;

// Has the event loop delete an object. Not by the object's own deleteLater(): that works once, and
// its owner may have used it up.
class Late final : public QObject {
public:
    explicit Late(QObject* object)
        : m_object(object) {}
    ~Late() override { delete m_object.data(); }

private:
    QPointer<QObject> m_object;
};

struct State {
    int operations = 0;
    int endings = 0;
    int modalLoops = 0;
    Objects retired;   ///< to be handed on by what is under way
    Objects scheduled; ///< the event loop has got them
};

State& state() {
    static State instance;
    return instance;
}

void deleteAll(Objects& objects) {
    while (!objects.isEmpty()) {
        delete objects.takeFirst().data();
    }
}

void schedule(Objects& objects) {
    Objects& scheduled = state().scheduled;
    scheduled.removeAll(QPointer<QObject>());
    const Objects due = std::exchange(objects, Objects());
    for (const QPointer<QObject>& object : due) {
        if (!object.isNull()) {
            auto* const late = new Late(object);
            late->deleteLater();
            scheduled.append(late);
        }
    }
}

} // namespace

Operation::Operation() {
    ++state().operations;
}

Operation::~Operation() {
    if (--state().operations == 0 && state().endings == 0) {
        schedule(state().retired);
    }
}

ModalLoop::ModalLoop() {
    ++state().modalLoops;
}

ModalLoop::~ModalLoop() {
    --state().modalLoops;
}

Ending::Ending() {
    ++state().endings;
}

Ending::~Ending() {
    // The last one deletes while it still counts, so that what goes may retire something in turn.
    if (state().endings == 1 && !isOperation()) {
        deleteAll(state().retired);
    }
    --state().endings;
}

bool isOperation() {
    return state().operations > 0;
}

void retire(QObject* object) {
    const Ending ending;
    state().retired.append(object);
}

void leave() {
    const State& now = state();
    if (now.operations > 0 || now.endings > 0 || now.modalLoops > 0) {
        keepMapped();
    } else {
        deleteAll(state().scheduled);
    }
}

void keepMapped() {
    Dl_info self{};
    if (dladdr(&state(), &self) != 0) {
        // The handle is not needed: this is about the flag.
        dlopen(self.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
    }
}

} // namespace underway
