#pragma once

#include <QString>
#include <memory>

class QWidget;

namespace marisonde {

/// What the program is: name, version, licence and libraries, as rich text.
QString AboutText();

/// The same in the middle of the screen, for as long as the program takes to start. Nobody has to answer it.
std::unique_ptr<QWidget> MakeSplash();

}  // namespace marisonde
