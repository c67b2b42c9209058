#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace test_support {

/// A small web server on 127.0.0.1 for one test, on a port of its own. Each path has the bytes of its answer,
/// status line and all, so that a test can cut or break them; other paths answer 404 with a web page.
class LocalServer {
 public:
  LocalServer();
  ~LocalServer();
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  std::string Address(std::string_view path) const;  ///< "http://127.0.0.1:port/path"

  void Serve(const std::string& path, std::string_view content);
  void Redirect(const std::string& path, std::string_view to);
  /// The bytes as they are, then the end of the connection, or silence until the client goes.
  void ServeRaw(const std::string& path, std::string bytes, bool stall = false);

  std::vector<std::string> requests() const;  ///< paths asked for, in order

 private:
  struct Answer {
    std::string bytes;
    bool stall = false;
  };
  void Loop();
  void Talk(int client);
  Answer AnswerFor(const std::string& path);
  bool WaitFor(int handle) const;  ///< false once the server ends

  int listener_ = -1, port_ = 0;
  int wake_[2] = {-1, -1};
  mutable std::mutex mutex_;
  std::map<std::string, Answer> answers_;
  std::vector<std::string> requests_;
  std::thread thread_;
};

}  // namespace test_support
