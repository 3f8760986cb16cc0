#pragma once

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace marisonde {

/// A program of the system that talks to a test through its standard input and output.
class PeerProgram {
  public:
    /// Whether the system has the program.
    static bool Installed(const std::string& name) {
        return std::system(("command -v " + name + " >/dev/null 2>&1").c_str()) == 0;
    }

    /// `words` are the name of the program and its arguments.
    explicit PeerProgram(std::vector<std::string> words) {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        if (pipe(in.data()) != 0 || pipe(out.data()) != 0) return;
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        pid_ = fork();
        if (pid_ == 0) {
            dup2(in[0], 0);
            dup2(out[1], 1);
            dup2(open("/dev/null", O_WRONLY), 2);
            for (const int end : {in[0], in[1], out[0], out[1]}) close(end);
            execvp(arguments[0], arguments.data());
            _exit(127);
        }
        close(in[0]);
        close(out[1]);
        toPeer_ = in[1];
        fromPeer_ = out[0];
    }
    ~PeerProgram() {
        close(toPeer_);
        close(fromPeer_);
        if (pid_ <= 0 || ended_) return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    PeerProgram(const PeerProgram&) = delete;
    PeerProgram& operator=(const PeerProgram&) = delete;

    /// What has come within 10 ms; empty also after the end.
    [[nodiscard]] std::string Read() const {
        pollfd waiting{fromPeer_, POLLIN, 0};
        if (poll(&waiting, 1, 10) <= 0) return {};
        std::array<char, 4096> buffer{};
        const ssize_t count = read(fromPeer_, buffer.data(), buffer.size());
        return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
    }
    void Write(std::string_view bytes) const {
        if (!bytes.empty() && write(toPeer_, bytes.data(), bytes.size()) < 0) ADD_FAILURE() << "peer is gone";
    }
    /// True once it has ended; ExitStatus() is then known.
    bool Ended() {
        int status = 0;
        if (!ended_ && waitpid(pid_, &status, WNOHANG) == pid_) {
            ended_ = true;
            exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        return ended_;
    }
    /// Waits up to 10 s for the end.
    int WaitForExit() {
        for (int i = 0; i < 1000 && !Ended(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds{10});
        return exitStatus_;
    }
    /// -1: it has not ended by itself.
    [[nodiscard]] int ExitStatus() const { return exitStatus_; }

  private:
    pid_t pid_ = -1;
    int toPeer_ = -1, fromPeer_ = -1;
    bool ended_ = false;
    int exitStatus_ = -1;
};

}  // namespace marisonde
