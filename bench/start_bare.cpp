// The least that a program with a window does: what the till's start is measured against.

#include <QApplication>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include "readymark.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    kovanix::bench::endWhenReady(u"button"_s);
    const QApplication application(argc, argv);
    QWidget window;
    QVBoxLayout layout(&window);
    QPushButton button(u"OK"_s);
    button.setObjectName(u"button"_s);
    layout.addWidget(&button);
    window.showMaximized();
    button.setFocus();
    return QApplication::exec();
}
