#pragma once

#include <QtTest>

#include "app/frame.h"
#include "desktop/application.h"

namespace kovanix {

/// The main procedure of a test program: the till's own application object around the cases of one class.
template <class Tests>
int runTests(int argc, char** argv) {
    Application application(argc, argv);
    prepareApplication();
    Tests tests;
    return QTest::qExec(&tests, argc, argv);
}

}  // namespace kovanix
