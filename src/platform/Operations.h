#pragma once

#include <QCoroTask>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Pump.h"

namespace marisonde {

/// One running operation, as its procedure sees it. Lives at least as long as the procedure runs.
class Operation {
  public:
    Operation(Pump& pump, std::string name) : pump_(pump), name_(std::move(name)) {}
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    [[nodiscard]] const std::string& Name() const { return name_; }
    [[nodiscard]] bool Cancelled() const { return cancelled_; }
    /// Asks the procedure to end: its waits end in the next turn, and waits begun later do not suspend.
    void Cancel() { cancelled_ = true; }
    /// As Pump::Until, and ended by Cancel. Ask Cancelled() afterwards: the result tells only about `met`.
    [[nodiscard]] Waiter Until(std::function<bool()> met, Millis limit = kNoLimit);
    /// Waits for one turn of the pump: more work is at hand, and the rest of the program comes first.
    [[nodiscard]] Waiter NextTurn();

  private:
    Pump& pump_;
    std::string name_;
    bool cancelled_ = false;
};

/// The owner of long operations, normally one for each window. Starts them, reports every exception that
/// leaves one, and ends them all before it dies. Must die before its pump.
class Operations {
  public:
    /// A procedure may be a capturing lambda: it is kept until the coroutine made from it has ended.
    using Procedure = std::function<QCoro::Task<>(Operation&)>;
    /// Gets the operation's name and what went wrong.
    using OnFailure = std::function<void(const std::string& name, const std::string& reason)>;

    Operations(Pump& pump, OnFailure onFailure) : pump_(pump), onFailure_(std::move(onFailure)) {}
    Operations(const Operations&) = delete;
    Operations& operator=(const Operations&) = delete;
    /// Cancels all and turns the pump until they have ended; one that does not end is reported. Within a turn
    /// of the pump (an operation that closes windows) nothing can be turned: there, first CancelAll and wait
    /// for the NextTurn.
    ~Operations();

    /// Runs the procedure up to its first wait, and on from the pump.
    void Start(std::string name, Procedure procedure);
    /// The same, unless one of this name is running: it is not asked for twice.
    void StartUnlessRunning(std::string name, Procedure procedure);
    [[nodiscard]] bool Running(std::string_view name) const;
    [[nodiscard]] std::size_t Count() const { return running_.size(); }
    void CancelAll();
    /// Cancels those of this name.
    void Cancel(std::string_view name);
    /// Turns the pump until all operations of this owner have ended, at most `turns` times; false when some
    /// go on.
    bool TurnUntilEnded(int turns = 1000);

  private:
    struct Entry {
        Entry(Pump& pump, std::string name, Procedure run)
            : operation(pump, std::move(name)), procedure(std::move(run)) {}
        Operation operation;
        Procedure procedure;
        Operations* owner = nullptr;  ///< null once the owner has died
    };
    static QCoro::Task<> Run(std::shared_ptr<Entry> entry);
    void Remove(const Entry& entry);
    void Report(const Entry& entry, const std::string& reason) const;

    Pump& pump_;
    OnFailure onFailure_;
    std::vector<std::shared_ptr<Entry>> running_;
};

}  // namespace marisonde
