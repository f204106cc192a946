#include "app/tekornek.h"

#include <QCoreApplication>

#include "desktop/singleinstance.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

SingleInstance& heldName() {
    // Belongs to the application object: lives as long as the process has an event loop to hear the others
    // with.
    static SingleInstance* const instance = [] {
        auto* created = new SingleInstance(tekornekadi(), QCoreApplication::instance());
        QObject::connect(created, &SingleInstance::raiseRequested, created, &raiseApplication);
        return created;
    }();
    return *instance;
}

}  // namespace

QString tekornekadi() {
    return u"Global\\KovanixSingleInstance2026"_s;
}

bool tekorneksorgu() {
    return heldName().isFirst();
}

void tekornekoneal() {
    static_cast<void>(heldName().raiseFirst());
}

}  // namespace kovanix
