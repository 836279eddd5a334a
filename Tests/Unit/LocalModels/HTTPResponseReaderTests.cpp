#include "LocalModels/HTTPResponseReader.h"
#include "Support/Testing.h"

namespace {

using State = HTTPResponseReader::State;

constexpr HTTPResponseReader::Limits small{.head = 200, .body = 20};

struct Row {
  const char* name;
  std::string bytes;
  State expected;
  int status = 200;
  const char* body = "";
  bool connectionEnds = false;
};

std::vector<Row> rows() {
  using enum State;
  const std::string ok = "HTTP/1.1 200 OK\r\n";
  const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
  return {
      {"a length", ok + "Content-Length: 2\r\n\r\nhi", complete, 200, "hi"},
      {"bytes behind the end", ok + "Content-Length: 2\r\n\r\nhiHTTP/1.1 500 No\r\n\r\n", complete, 200,
       "hi"},
      {"any case, any blanks", ok + "cOnTent-LENGTH:\t 2 \r\n\r\nhi", complete, 200, "hi"},
      {"bare line feeds", "HTTP/1.0 404 Not Found\nContent-Length: 0\n\n", complete, 404},
      {"no reason", "HTTP/1.1 503\r\nContent-Length: 0\r\n\r\n", complete, 503},
      {"no body by status", "HTTP/1.1 204 None\r\n\r\n", complete, 204},
      {"interim answers",
       "HTTP/1.1 100 Go\r\nContent-Length: 9\r\n\r\nHTTP/1.1 102 On\r\n\r\n" + ok +
           "Content-Length: 2\r\n\r\nhi",
       complete, 200, "hi"},
      {"the same length twice", ok + "Content-Length: 2\r\nContent-Length: 2\r\n\r\nhi", complete, 200, "hi"},
      {"no length", ok + "\r\nhi", reading, 200, "hi"},
      {"no length, ended", ok + "\r\nhi", complete, 200, "hi", true},
      {"chunks", chunked + "2\r\nhi\r\nA;x=y\r\n, big wor\n\r\n0\r\n\r\n", complete, 200, "hi, big wor\n"},
      {"trailers", chunked + "1\r\nh\r\n0\r\nX: y\r\n\r\n", complete, 200, "h"},
      {"chunks beat a length",
       ok + "Content-Length: 9\r\nTransfer-Encoding: Chunked\r\n\r\n1\r\nh\r\n0\r\n\r\n", complete, 200, "h"},

      {"an end in the status", "HTTP/1.1 20", malformed, 0, "", true},
      {"an end in the headers", ok + "Content-", malformed, 200, "", true},
      {"an end in the body", ok + "Content-Length: 5\r\n\r\nhi", malformed, 200, "hi", true},
      {"an end in a chunk", chunked + "5\r\nhi", malformed, 200, "hi", true},
      {"an end before the last chunk", chunked + "2\r\nhi\r\n", malformed, 200, "hi", true},
      {"another protocol", "SSH-2.0\r\n", malformed, 0},
      {"another version", "HTTP/2 200 OK\r\n", malformed, 0},
      {"a status of words", "HTTP/1.1 two OK\r\n", malformed, 0},
      {"a status too small", "HTTP/1.1 099 OK\r\n", malformed, 0},
      {"a status too long", "HTTP/1.1 2000 OK\r\n", malformed, 0},
      {"another protocol from now on", "HTTP/1.1 101 Switch\r\n\r\n", malformed, 101},
      {"a header without a colon", ok + "Content-Length 2\r\n\r\n", malformed},
      {"a header without a name", ok + ": 2\r\n\r\n", malformed},
      {"a folded header", ok + " folded: 2\r\n\r\n", malformed},
      {"a length of words", ok + "Content-Length: two\r\n\r\n", malformed},
      {"a negative length", ok + "Content-Length: -1\r\n\r\n", malformed},
      {"a length beyond numbers", ok + "Content-Length: 99999999999999999999\r\n\r\n", malformed},
      {"two lengths", ok + "Content-Length: 2\r\nContent-Length: 3\r\n\r\nhi", malformed},
      {"a compressed body", ok + "Transfer-Encoding: gzip, chunked\r\n\r\n", malformed},
      {"a chunk size of words", chunked + "zz\r\n", malformed},
      {"a chunk longer than said", chunked + "1\r\nhi\r\n", malformed, 200, "h"},

      {"a length beyond the bound", ok + "Content-Length: 21\r\n\r\n", tooLarge},
      {"a body beyond the bound", ok + "\r\n" + std::string(21, 'x'), tooLarge},
      {"chunks beyond the bound", chunked + "14\r\n" + std::string(20, 'x') + "\r\n1\r\n", tooLarge, 200,
       "xxxxxxxxxxxxxxxxxxxx"},
      {"headers beyond the bound", ok + std::string(200, 'x'), tooLarge},
      {"many headers beyond the bound",
       ok + "A: " + std::string(90, 'x') + "\r\nB: " + std::string(90, 'x') + "\r\n", tooLarge},
      {"trailers beyond the bound", chunked + "0\r\n" + std::string(200, 'x'), tooLarge},
  };
}

}  // namespace

TEST(HTTPResponseReader, ReadsAnswersHoweverTheyArrive) {
  for (const auto& row : rows()) {
    for (const std::size_t step : {row.bytes.size(), std::size_t{1}, std::size_t{3}}) {
      SCOPED_TRACE(std::string(row.name) + ", " + std::to_string(step) + " bytes at a time");
      HTTPResponseReader reader(small);
      for (std::size_t at = 0; at < row.bytes.size(); at += step) reader.feed(row.bytes.substr(at, step));
      if (row.connectionEnds) reader.end();
      EXPECT_EQ(reader.state(), row.expected);
      EXPECT_EQ(reader.status(), row.status);
      if (row.expected != State::tooLarge) {
        EXPECT_EQ(reader.body(), row.body);
      }
      EXPECT_LE(reader.body().size(), small.body);
      EXPECT_NE(reader.end(), State::reading);
    }
  }
}
