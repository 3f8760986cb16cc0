#pragma once

// Precompiled for the tests of forms: what nearly all of them read, and none of the program's own.

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "support/HostHeaders.h"
