#pragma once

#include <QIcon>

namespace marisonde {

/// The pictures on the tool bars. All are drawn here, so that they go together, stay sharp on every screen,
/// and need no icon theme.
enum class ToolIcon {
    Open,
    Save,
    Close,
    Connect,
    Terminal,
    Start,
    Stop,
    Full,
    ZoomIn,
    ZoomOut,
    Previous,
    VsTime,
    VsDepth
};

/// Drawn in the colour of a button's text, so that it is seen on a light and on a dark theme, also after a
/// change of theme.
QIcon MakeToolIcon(ToolIcon icon);

}  // namespace marisonde
