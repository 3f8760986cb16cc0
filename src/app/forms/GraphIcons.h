#pragma once

#include <QIcon>

namespace marisonde {

/// The pictures of the graph's commands, and of starting and stopping what it shows.
enum class GraphIcon { Full, ZoomIn, ZoomOut, Previous, VsTime, VsDepth, Start, Stop };

/// Drawn in the colour of a button's text, so that it is seen on a light and on a dark theme, also after a
/// change of theme.
QIcon MakeGraphIcon(GraphIcon icon);

}  // namespace marisonde
