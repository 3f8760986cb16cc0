#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "calibration/Converter.h"
#include "link/InstrumentLink.h"
#include "operations/TerminalBox.h"
#include "operations/TerminalLines.h"
#include "operations/TypedLine.h"

namespace marisonde {

/// The terminal of one data window without its form: what the user types goes to the instrument, replies and
/// data lines come to a box each. It follows the instrument whether or not its form is open.
class Termulator {
  public:
    static constexpr std::size_t kMaxResponse = 32767;
    static constexpr std::size_t kMaxData = 5000;
    static constexpr std::string_view kNotConnected =
        "No commands can be sent because no connection is active. Use the Connect command to open a "
        "connection";

    /// `link` outlives the terminal.
    explicit Termulator(InstrumentLink& link) : link_(link) {}

    bool Numerical = false;  ///< data lines as calibrated values, where the model has some

    [[nodiscard]] const TerminalBox& Response_Box() const { return response_; }
    [[nodiscard]] const TerminalBox& Data_Box() const { return data_; }
    [[nodiscard]] TerminalBox& Response_Box() { return response_; }
    [[nodiscard]] TerminalBox& Data_Box() { return data_; }
    [[nodiscard]] const TypedLine& Command_Box() const { return typed_; }
    /// Where the last line begins in Response_Box: 0 when the box is empty or has no line end.
    [[nodiscard]] std::size_t LastLineStart() const { return lastLineStart_; }
    /// Whether data lines of the model can be shown as values.
    [[nodiscard]] bool OffersNumerical() const;

    /// A key typed anywhere in the form; a carriage return ends the line. False: no port is open, the key is
    /// dropped, and the user is to be told kNotConnected.
    bool KeyPress(char key);
    /// Recalls typed lines; nothing goes out before the user goes on with them.
    void OlderLine() { typed_.Older(); }
    void NewerLine() { typed_.Newer(); }
    /// False as KeyPress.
    bool Paste(std::string_view text);

    /// Puts text at the end of the box of replies. Past kMaxResponse the box loses its first fifth.
    void ResponseAdd(std::string_view text);
    /// Cuts off the last line, which the instrument writes anew.
    void ResponseClearLastLine();
    void ResponseClear();
    /// Keeps data out of the replies: a data line that stands alone in the box goes; one at the end loses its
    /// line end and is written over by what comes next.
    void ResponseRemoveDataLines();
    /// The box holds the newest kMaxData characters.
    void AddLineToDataBox(std::string_view text);
    void DataClear();
    /// What stands over the columns of Data_Box, see TerminalHeadings; empty while it has none.
    [[nodiscard]] const std::string& Headings() const { return headings_; }

    /// Shows what has come since the last tick: lines, each where it belongs, then the line that has not
    /// ended yet. `converter` is null while no calibration is ready.
    void UpdateTerm(const Converter* converter, const TerminalView& view);

    /// Both boxes, as they are saved.
    [[nodiscard]] std::string TextToSave() const;

  private:
    void EnterLine();
    void Send(const std::string& text);
    void AddReply(std::string_view line);
    void AddData(LineKind kind, const Converter* converter, const TerminalView& view);
    void ReadDataLine(LineKind kind, const Converter* converter, const TerminalView& view);
    void ShowPartialLine();
    void DropPartialLine();
    [[nodiscard]] std::string PartialLine() const;

    InstrumentLink& link_;
    TerminalBox response_;
    TerminalBox data_;
    TypedLine typed_;
    std::size_t lastLineStart_ = 0;
    std::string partial_;  ///< the line without end that stands at the end of the replies
    std::string headings_;
    bool catchesUp_ = false;  ///< a recalled line waits in PendingOutput

    // The line at hand.
    std::string line_;
    RawSample raw_;
    CalibratedSample sample_;
};

}  // namespace marisonde
