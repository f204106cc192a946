// The least that a program with a window does: what the till's start is measured against.

#include <QApplication>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include "readymark.h"

int main(int argc, char** argv) {
    kovanix::bench::endWhenReady(QStringLiteral("button"));
    const QApplication application(argc, argv);
    QWidget window;
    QVBoxLayout layout(&window);
    QPushButton button(QStringLiteral("OK"));
    button.setObjectName(QStringLiteral("button"));
    layout.addWidget(&button);
    window.showMaximized();
    button.setFocus();
    return QApplication::exec();
}
