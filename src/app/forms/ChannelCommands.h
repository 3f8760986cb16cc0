#pragma once

#include <QObject>
#include <vector>

#include "app/PlottedChannels.h"
#include "graphs/LivePlot.h"

namespace marisonde {

class ChannelPanel;
class ChartView;
class DataWindow;

/// The channels of a data window: which are shown beside the graph and in it, under which name and colour.
class ChannelCommands final : public QObject {
    Q_OBJECT

  public:
    /// All outlive the commands.
    ChannelCommands(DataWindow& window, ChartView& chart, ChannelPanel& panel);

    /// Another model or calibration: rows, curves and legend are made anew.
    void InstrumentChanged();
    /// Shows the current values. Once a tick.
    void Update();
    void ChannelOnOffCommand(int box, bool on);
    void SetSigmaOption(SigmaChoice choice);

  private:
    void ShowDetails(int box);
    void ShowSigmaOptions();

    DataWindow& window_;
    ChartView& chart_;
    ChannelPanel& panel_;
    std::vector<PlottedChannel> channels_;
    int ticksToDetails_ = 0;
};

}  // namespace marisonde
