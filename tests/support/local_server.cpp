#include "support/local_server.h"

#include <fmt/core.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace test_support {
namespace {

std::string Reply(std::string_view status, std::string_view headers, std::string_view content) {
  return fmt::format("HTTP/1.1 {}\r\n{}Content-Length: {}\r\nConnection: close\r\n\r\n{}", status, headers,
                     content.size(), content);
}

}  // namespace

LocalServer::LocalServer() {
  setenv("no_proxy", "127.0.0.1", 1);  // a proxy of the machine does not reach us
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  sockaddr* plain = static_cast<sockaddr*>(static_cast<void*>(&address));
  if (bind(listener_, plain, size) != 0 || listen(listener_, 16) != 0 ||
      getsockname(listener_, plain, &size) != 0 || pipe(wake_) != 0) {
    throw std::runtime_error("the test server cannot listen");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Loop(); });
}

LocalServer::~LocalServer() {
  close(wake_[1]);
  thread_.join();
  close(wake_[0]);
  close(listener_);
}

std::string LocalServer::Address(std::string_view path) const {
  return fmt::format("http://127.0.0.1:{}/{}", port_, path);
}

void LocalServer::Serve(const std::string& path, std::string_view content) {
  ServeRaw(path, Reply("200 OK", "Content-Type: text/plain\r\n", content));
}

void LocalServer::Redirect(const std::string& path, std::string_view to) {
  ServeRaw(path, Reply("302 Found", fmt::format("Location: {}\r\n", to), "<html>mutat</html>"));
}

void LocalServer::ServeRaw(const std::string& path, std::string bytes, bool stall) {
  const std::lock_guard lock(mutex_);
  answers_["/" + path] = {std::move(bytes), stall};
}

std::vector<std::string> LocalServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

LocalServer::Answer LocalServer::AnswerFor(const std::string& path) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(path);
  const auto known = answers_.find(path);
  if (known != answers_.end()) return known->second;
  return {Reply("404 Not Found", "Content-Type: text/html\r\n", "<html><body>Nu exista</body></html>"),
          false};
}

bool LocalServer::WaitFor(int handle) const {
  pollfd waiting[2] = {{handle, POLLIN, 0}, {wake_[0], POLLIN, 0}};
  return poll(waiting, 2, -1) > 0 && waiting[1].revents == 0;
}

void LocalServer::Loop() {
  while (WaitFor(listener_)) {
    const int client = accept(listener_, nullptr, nullptr);
    if (client < 0) continue;
    Talk(client);
    close(client);
  }
}

void LocalServer::Talk(int client) {
  std::string request;
  char chunk[2048];
  while (request.find("\r\n\r\n") == std::string::npos) {
    if (!WaitFor(client)) return;
    const ssize_t length = recv(client, chunk, sizeof chunk, 0);
    if (length <= 0) return;
    request.append(chunk, static_cast<std::size_t>(length));
  }
  const std::size_t begin = request.find(' ') + 1;
  const Answer answer = AnswerFor(request.substr(begin, request.find(' ', begin) - begin));
  std::string_view left = answer.bytes;
  while (!left.empty()) {
    const ssize_t sent = send(client, left.data(), left.size(), MSG_NOSIGNAL);
    if (sent <= 0) return;
    left.remove_prefix(static_cast<std::size_t>(sent));
  }
  if (answer.stall) WaitFor(client);
}

}  // namespace test_support
