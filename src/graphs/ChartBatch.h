#pragma once

#include "graphs/Chart2D.h"

namespace marisonde {

/// Keeps a chart from redrawing while it is changed, and gives it back as it was.
class ChartBatch {
  public:
    explicit ChartBatch(Chart2D& chart) : chart_(chart), before_(chart.IsBatched()) {
        chart_.SetIsBatched(true);
    }
    ~ChartBatch() { chart_.SetIsBatched(before_); }
    ChartBatch(const ChartBatch&) = delete;
    ChartBatch& operator=(const ChartBatch&) = delete;

  private:
    Chart2D& chart_;
    bool before_;
};

}  // namespace marisonde
