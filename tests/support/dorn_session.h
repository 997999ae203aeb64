// A running engine process fed line by line, whose output lines are awaited with a deadline.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

class DornSession {
 public:
  DornSession() {
    int in[2], out[2];
    if (pipe(in) != 0 || pipe(out) != 0) ADD_FAILURE() << "pipe";
    pid = fork();
    if (pid == 0) {
      dup2(in[0], 0);
      dup2(out[1], 1);
      close(in[1]);
      close(out[0]);
      execl(DORN_BINARY, DORN_BINARY, static_cast<char*>(nullptr));
      _exit(127);
    }
    close(in[0]);
    close(out[1]);
    toEngine = in[1];
    fromEngine = out[0];
  }
  ~DornSession() {
    send("quit");
    close(toEngine);
    int status = 0;
    waitpid(pid, &status, 0);
    close(fromEngine);
    // A sanitizer's report ends the program with a failing status.
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  }
  DornSession(const DornSession&) = delete;
  DornSession& operator=(const DornSession&) = delete;

  void send(const std::string& line) {
    std::string text = line + "\n";
    if (write(toEngine, text.data(), text.size()) != ssize_t(text.size())) ADD_FAILURE() << "write";
  }

  // Every line up to and including the first that starts with `prefix`; empty when none came in time.
  std::vector<std::string> waitFor(const std::string& prefix, int timeoutMs) {
    std::vector<std::string> lines;
    auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (std::string line; nextLine(line, deadline);) {
      lines.push_back(line);
      if (line.rfind(prefix, 0) == 0) return lines;
    }
    seen.insert(seen.end(), lines.begin(), lines.end());
    return {};
  }

  // Lines that came while an awaited line did not.
  std::vector<std::string> seen;

 private:
  bool nextLine(std::string& line, std::chrono::steady_clock::time_point deadline) {
    while (true) {
      size_t nl = buffer.find('\n');
      if (nl != std::string::npos) {
        line = buffer.substr(0, nl);
        buffer.erase(0, nl + 1);
        return true;
      }
      auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      if (left.count() <= 0) return false;
      pollfd p{fromEngine, POLLIN, 0};
      if (poll(&p, 1, int(left.count())) <= 0) return false;
      char chunk[4096];
      ssize_t n = read(fromEngine, chunk, sizeof chunk);
      if (n <= 0) return false;
      buffer.append(chunk, size_t(n));
    }
  }

  pid_t pid = -1;
  int toEngine = -1, fromEngine = -1;
  std::string buffer;
};
