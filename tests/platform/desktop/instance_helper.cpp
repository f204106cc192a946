// Holds a name, or asks for its holder: instance_helper hold|raise NAME. A holder writes "first" or "second",
// then "raised" and the activation token for each request; a raiser writes "taken" or "refused".

#include <QApplication>
#include <QTextStream>
#include <cstdio>

#include "desktop/singleinstance.h"

using namespace kovanix;

namespace {

void say(const QByteArray& line) {
    std::fprintf(stdout, "%s\n", line.constData());
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    const SingleInstance instance(arguments.at(2));
    if (arguments.at(1) == QLatin1String("raise")) {
        say(instance.raiseFirst(5000) ? "taken" : "refused");
        return 0;
    }
    say(instance.isFirst() ? "first" : "second");
    if (!instance.isFirst())
        return 0;
    QObject::connect(&instance, &SingleInstance::raiseRequested, &application,
                     [] { say("raised " + qgetenv("XDG_ACTIVATION_TOKEN")); });
    return QApplication::exec();
}
