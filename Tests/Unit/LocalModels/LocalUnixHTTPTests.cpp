#include "LocalModels/LocalUnixHTTP.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <sys/socket.h>
#include <sys/un.h>

namespace {

/// A socket that listens in the test's own process.
class LocalHTTP : public ::testing::Test {
 protected:
  using Error = LocalUnixHTTP::Error;
  using Answer = std::expected<LocalUnixHTTP::Response, Error>;

  LocalHTTP() {
    for (std::size_t index = 0; index < token.size(); ++index) token.reveal()[index] = 'k';
  }

  void listen(int backlog = 8) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    listener = UniqueDescriptor(::socket(AF_UNIX, SOCK_STREAM, 0));
    ASSERT_EQ(::bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener.get(), backlog), 0);
  }

  Answer ask(Duration timeout, std::optional<pid_t> server = std::nullopt,
             std::optional<std::string_view> body = std::nullopt) {
    const std::array<const WorkerCancellation*, 1> interruptions{&interruption};
    return LocalUnixHTTP(clock, interruptions)
        .request({.socketURL = path,
                  .token = token,
                  .method = "POST",
                  .path = "/a",
                  .body = body,
                  .timeout = timeout,
                  .server = server});
  }

  /// Takes one connection, reads until what has come ends with `until`, says `answer`.
  std::string serveOnce(const std::string& until, const std::string& answer) const {
    const UniqueDescriptor connection(::accept(listener.get(), nullptr, nullptr));
    std::string heard;
    std::array<char, 4'096> piece{};
    for (ssize_t count = 1; !heard.ends_with(until) && count > 0;) {
      count = ::recv(connection.get(), piece.data(), piece.size(), 0);
      heard.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    ::send(connection.get(), answer.data(), answer.size(), MSG_NOSIGNAL);
    return heard;
  }

  TemporaryFolder folder;
  std::filesystem::path path = folder.path() / "a.sock";
  UniqueDescriptor listener;
  SystemClock clock;
  WorkerCancellation interruption;
  SecretBytes token{4};
};

}  // namespace

TEST_F(LocalHTTP, SendsTheRequestAndReadsTheAnswer) {
  listen();
  std::string heard;
  std::thread server([&] { heard = serveOnce("{}", "HTTP/1.1 201 Made\r\nContent-Length: 2\r\n\r\nhi"); });
  const auto answer = ask(10s, ::getpid(), "{}");
  server.join();
  EXPECT_EQ(heard,
            "POST /a HTTP/1.1\r\nHost: localhost\r\nAuthorization: Bearer kkkk\r\nConnection: close\r\n"
            "Content-Type: application/json\r\nContent-Length: 2\r\n\r\n{}");
  ASSERT_TRUE(answer.has_value());
  EXPECT_EQ(answer->status, 201);
  EXPECT_EQ(answer->body, "hi");
}

TEST_F(LocalHTTP, SendsNoLengthWithoutABody) {
  listen();
  std::string heard;
  std::thread server([&] { heard = serveOnce("\r\n\r\n", "HTTP/1.1 204 None\r\n\r\n"); });
  EXPECT_TRUE(ask(10s).has_value());
  server.join();
  EXPECT_TRUE(heard.ends_with("Connection: close\r\n\r\n")) << heard;
}

TEST_F(LocalHTTP, SendsMoreThanASocketHolds) {
  listen();
  const auto body = std::string(1 << 19, 'b') + "}";
  EXPECT_EQ(ask(50ms, std::nullopt, body).error(), Error::timedOut) << "nobody reads";
  { const UniqueDescriptor givenUp(::accept(listener.get(), nullptr, nullptr)); }
  std::string heard;
  std::thread server([&] { heard = serveOnce("}", "HTTP/1.1 204 None\r\n\r\n"); });
  const auto answer = ask(10s, std::nullopt, body);
  server.join();
  EXPECT_TRUE(answer.has_value());
}

TEST_F(LocalHTTP, TellsNothingToAStranger) {
  listen();
  EXPECT_EQ(ask(10s, ::getpid() + 1, "secret").error(), Error::foreignServer);
  const UniqueDescriptor connection(::accept(listener.get(), nullptr, nullptr));
  char byte = 0;
  EXPECT_EQ(::recv(connection.get(), &byte, 1, 0), 0) << "it has heard something";
}

TEST_F(LocalHTTP, EndsInEveryCase) {
  EXPECT_EQ(ask(10s).error(), Error::unreachable) << "nothing is there";
  listen(/*backlog=*/0);
  EXPECT_EQ(ask(0s).error(), Error::timedOut);
  EXPECT_EQ(ask(20ms).error(), Error::timedOut) << "nobody accepts";
  EXPECT_EQ(ask(20ms).error(), Error::timedOut) << "the queue of connections is full";
  interruption.cancel();
  EXPECT_EQ(ask(24h).error(), Error::interrupted);
  path = folder.path() / std::string(LocalUnixHTTP::longestSocketPath, 's');
  EXPECT_EQ(ask(10s).error(), Error::pathTooLong);
}
