#pragma once

#include <QString>
#include <qcustomplot.h>
#include <vector>

#include "graphs/forms/CurveSample.h"

namespace marisonde {

struct LegendEntry {
    QString name;
    CurveSample curve;
    bool operator==(const LegendEntry&) const = default;
};

/// The names of the curves in a line below the graph, in as many rows as the width asks for.
class ChartLegend {
  public:
    /// Takes the plot's own legend out of the graph and puts it below.
    explicit ChartLegend(QCustomPlot& plot);

    void SetEntries(const std::vector<LegendEntry>& entries);
    void SetTextColor(const QColor& color);
    /// To be called when the width has changed. True when the rows have changed, so that a replot is due.
    bool FitTo(int width);

  private:
    QCPLegend& legend_;
    std::vector<LegendEntry> entries_;
    int perRow_ = 0;
};

}  // namespace marisonde
