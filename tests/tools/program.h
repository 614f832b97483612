// Runs dbentry as a process of its own.
//
//   const Outcome outcome = Program({"list", archive}).run();
//   EXPECT_EQ(outcome.code, 0);
#pragma once

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tools/temporary_folder.h"

struct Outcome {
  int code = -1;   // the exit code; -1 when a signal ended the program
  int signal = 0;  // the signal that ended it; 0 when none did
  std::string out;
  std::string messages;
};

struct Signalled {
  int signal;
  std::chrono::microseconds after;
};

class Program {
 public:
  explicit Program(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {
    arguments_.insert(arguments_.begin(), DBENTRY_PROGRAM);
  }

  // Standard input comes from this file.
  Program& input_from(const std::string& path) {
    input_ = path;
    return *this;
  }
  // A variable of the environment.
  Program& with_variable(const std::string& name, const std::string& value) {
    variables_.emplace_back(name, value);
    return *this;
  }
  // Standard output goes to this file instead; the empty name closes it before the start.
  Program& output_to(const std::string& path) {
    output_ = path;
    return *this;
  }
  // Standard output is a pipe that nobody reads any more.
  Program& output_to_nobody() {
    output_to_nobody_ = true;
    return *this;
  }
  Program& messages_to(const std::string& path) {
    messages_ = path;
    return *this;
  }
  // Permissions of files hold, even where the test runs as root.
  Program& held_to_permissions() {
    held_to_permissions_ = true;
    return *this;
  }
  Program& file_size_limit(rlim_t bytes) {
    file_size_limit_ = bytes;
    return *this;
  }
  Program& signalled(int signal, std::chrono::microseconds after) {
    signalled_ = {signal, after};
    return *this;
  }

  [[nodiscard]] Outcome run() const {
    const TemporaryFolder folder;
    const std::string out = output_.value_or(folder.file("out"));
    const std::string messages = messages_.value_or(folder.file("messages"));
    std::vector<char*> arguments;
    for (const std::string& argument : arguments_) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
      become(out, messages, arguments.data());
      ::_exit(127);
    }
    if (signalled_) {
      std::this_thread::sleep_for(signalled_->after);
      ::kill(child, signalled_->signal);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    Outcome outcome;
    if (WIFEXITED(status)) outcome.code = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
    if (!output_) outcome.out = contents_of_file(out);
    if (!messages_) outcome.messages = contents_of_file(messages);
    return outcome;
  }

 private:
  void become(const std::string& out, const std::string& messages, char** arguments) const {
    if (input_) {
      const int input = ::open(input_->c_str(), O_RDONLY);
      ::dup2(input, STDIN_FILENO);
      ::close(input);
    }
    ::unsetenv("DBENTRY_COLLECTION");
    for (const auto& [name, value] : variables_) ::setenv(name.c_str(), value.c_str(), 1);
    ::close(STDOUT_FILENO);
    if (output_to_nobody_) {
      int ends[2];
      if (::pipe(ends) != 0) return;
      ::close(ends[0]);
      ::dup2(ends[1], STDOUT_FILENO);
    } else if (!out.empty() && ::open(out.c_str(), O_WRONLY | O_CREAT, 0644) != STDOUT_FILENO) {
      return;
    }
    const int error = ::open(messages.c_str(), O_WRONLY | O_CREAT | O_NOCTTY, 0644);
    ::dup2(error, STDERR_FILENO);
    if (error != STDERR_FILENO) ::close(error);
    // Whoever started the tests, such as nohup, may have had it ignored.
    if (signalled_) ::signal(signalled_->signal, SIG_DFL);
    if (file_size_limit_) {
      const rlimit limit = {*file_size_limit_, *file_size_limit_};
      ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    if (held_to_permissions_) {
      // Takes effect with the new program; refused to others than root, who do not need it.
      ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
      ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
    }
    ::execv(arguments[0], arguments);
  }

  std::vector<std::string> arguments_;
  std::optional<std::string> input_;
  std::vector<std::pair<std::string, std::string>> variables_;
  std::optional<std::string> output_;
  std::optional<std::string> messages_;
  bool output_to_nobody_ = false;
  bool held_to_permissions_ = false;
  std::optional<rlim_t> file_size_limit_;
  std::optional<Signalled> signalled_;
};
