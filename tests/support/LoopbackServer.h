// A small HTTP server on 127.0.0.1 for one test, on a port the system picks: every request
// gets the same answer, or none at all, or its answer once the test releases it. It stops
// when the object goes.
#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace lumenor::testing {

class LoopbackServer {
 public:
  // `response` is sent whole (status line, headers and body) to every request; with
  // `silent` the server accepts and never answers.
  explicit LoopbackServer(std::string response, bool silent = false);
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;
  ~LoopbackServer();

  bool Listening() const { return port_ != 0; }
  // "http://127.0.0.1:PORT"
  std::wstring Url() const;
  int Port() const { return port_; }
  int Requests() const { return requests_.load(); }
  // From Hold on, requests wait unanswered until Release; the server's end closes them.
  void Hold() { holding_ = true; }
  void Release() { holding_ = false; }

  // A response with status 200 and `body`; or another status.
  static std::string Answer(const std::string& body, int status = 200);

 private:
  void Serve();

  std::string response_;
  bool silent_;
  unsigned long long listener_;  // the socket, as a number so this header needs no Winsock
  int port_ = 0;
  std::atomic<bool> stopping_{false};
  std::atomic<bool> holding_{false};
  std::atomic<int> requests_{0};
  std::thread thread_;
};

}  // namespace lumenor::testing
