#include "core/LauncherContract.h"
#include "platform/HostOpener.h"
#include "support/SystemLog.h"

#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using opener::Verdict;
using testing::ElementsAre;

// With a launcher's end that the test holds.
class HostOpenerTest : public testing::Test {
 protected:
  HostOpenerTest() {
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends_), 0);
    opener_.connectTo(ends_[0]);
  }
  ~HostOpenerTest() override { close(ends_[1]); }

  opener::Request request() {
    opener::Request request{};
    const ssize_t got = recv(ends_[1], &request, sizeof request, MSG_DONTWAIT);
    size_ = got < 0 ? 0 : static_cast<std::size_t>(got) - opener::requestHead;
    return request;
  }
  void answer(std::uint32_t number, Verdict verdict) {
    opener::Answer answer{number, verdict, {}};
    const auto size = opener::answerHead + std::string("/host").copy(answer.hostPath, sizeof answer.hostPath);
    EXPECT_EQ(send(ends_[1], &answer, size, 0), static_cast<ssize_t>(size));
  }

  int ends_[2] = {-1, -1};
  std::size_t size_ = 0;
  std::vector<std::string> unavailable_;
  HostOpener opener_{[this](const QUrl& url, const QString& hostPath) {
    unavailable_.push_back((url.toString() + hostPath).toStdString());
  }};
};

TEST_F(HostOpenerTest, HandsURLsOverAndTellsWhichCouldNotBeOpened) {
  EXPECT_TRUE(opener_.open(QUrl("filza://view/var/\u0645 b/")));
  const opener::Request first = request();
  EXPECT_EQ(std::string(first.url, size_), "filza://view/var/%D9%85%20b/");
  for (const char* url : {"https://example.com/2", "https://example.com/3", "https://example.com/4"})
    EXPECT_TRUE(opener_.open(QUrl(QString::fromLatin1(url))));
  const std::uint32_t second = request().number;
  const std::uint32_t third = request().number;
  // In whatever order they come; numbers that nobody asked with are nobody's.
  answer(third, Verdict::Unavailable);
  answer(first.number, Verdict::Opened);
  answer(second, Verdict::Refused);
  answer(third, Verdict::Unavailable);
  answer(12345, Verdict::Unavailable);
  answer(request().number, Verdict::Unavailable);
  EXPECT_TRUE(unavailable_.empty()) << "before the event loop";
  EXPECT_TRUE(QTest::qWaitFor([this] { return unavailable_.size() == 2; }));
  EXPECT_THAT(unavailable_, ElementsAre("https://example.com/3/host", "https://example.com/4/host"));
}

TEST_F(HostOpenerTest, SendsNothingThatIsTooLong) {
  EXPECT_FALSE(opener_.open(QUrl(QString("https://example.com/") + QString(3000, QLatin1Char('x')))));
  EXPECT_FALSE(opener_.open(QUrl("https://[example")));
  request();
  EXPECT_EQ(size_, 0U);
  EXPECT_THAT(systemlog::take(),
              ElementsAre(testing::HasSubstr("xxx"), testing::HasSubstr("https://[example")));
}

}  // namespace
