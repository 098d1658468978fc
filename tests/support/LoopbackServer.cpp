#include "tests/support/LoopbackServer.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <vector>

namespace lumenor::testing {

LoopbackServer::LoopbackServer(std::string response, bool silent)
    : response_(std::move(response)), silent_(silent), listener_(INVALID_SOCKET) {
  WSADATA data{};
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) return;
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  if (listener == INVALID_SOCKET) return;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = 0;
  int length = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || listen(listener, 8) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    closesocket(listener);
    return;
  }
  listener_ = listener;
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

LoopbackServer::~LoopbackServer() {
  stopping_ = true;
  if (thread_.joinable()) thread_.join();
  if (listener_ != INVALID_SOCKET) closesocket(static_cast<SOCKET>(listener_));
  WSACleanup();
}

std::wstring LoopbackServer::Url() const { return L"http://127.0.0.1:" + std::to_wstring(port_); }

std::string LoopbackServer::Answer(const std::string& body, int status) {
  return "HTTP/1.1 " + std::to_string(status) + (status == 200 ? " OK" : " Not Found") +
         "\r\nContent-Type: text/plain\r\nContent-Length: " + std::to_string(body.size()) +
         "\r\nConnection: close\r\n\r\n" + body;
}

void LoopbackServer::Serve() {
  std::vector<SOCKET> held;        // the silent server keeps its connections open, unanswered
  std::vector<SOCKET> unanswered;  // answered on release
  const auto answer = [this](SOCKET client) {
    (void)send(client, response_.data(), static_cast<int>(response_.size()), 0);
    (void)shutdown(client, SD_SEND);
    closesocket(client);
  };
  while (!stopping_) {
    if (!holding_) {
      for (const SOCKET client : unanswered) answer(client);
      unanswered.clear();
    }
    // Waits in short steps: a socket closed under a waiting accept does not wake it everywhere.
    fd_set ready;
    FD_ZERO(&ready);
    FD_SET(static_cast<SOCKET>(listener_), &ready);
    timeval step{0, 100000};
    const int waiting = select(0, &ready, nullptr, nullptr, &step);
    if (waiting == 0) continue;
    if (waiting < 0) break;
    const SOCKET client = accept(static_cast<SOCKET>(listener_), nullptr, nullptr);
    if (client == INVALID_SOCKET) break;
    ++requests_;
    // The request: read up to the blank line that ends its headers.
    std::string request;
    char buffer[1024];
    while (request.find("\r\n\r\n") == std::string::npos) {
      const int got = recv(client, buffer, sizeof buffer, 0);
      if (got <= 0) break;
      request.append(buffer, static_cast<size_t>(got));
    }
    if (silent_) {
      held.push_back(client);
    } else if (holding_) {
      unanswered.push_back(client);
    } else {
      answer(client);
    }
  }
  for (const SOCKET client : held) closesocket(client);
  for (const SOCKET client : unanswered) closesocket(client);
}

}  // namespace lumenor::testing
