// Calls on the running instance's door on the session bus, with arguments of any kind. Run in a private
// session.

#include "Require.h"
#include "Shell/RemoteCommands.h"
#include "Shell/RemoteInterface.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QVariant>
#include <array>
#include <string>

using namespace murmel;

namespace {

constexpr const char* identifier = "app.murmel.Fuzz";

/// What is left of the input; zeros at its end.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  std::uint8_t next() { return size_ == 0 ? 0 : (--size_, *data_++); }
  [[nodiscard]] bool empty() const { return size_ == 0; }
  QString text() {
    QByteArray bytes;
    for (int left = next() % 32; left > 0; --left) bytes.append(static_cast<char>(next()));
    bytes.replace('\0', "");
    return QString::fromUtf8(bytes);
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

QVariant argument(Bytes& bytes, int depth = 0) {
  constexpr int deepest = 3;
  switch (bytes.next() % (depth < deepest ? 10 : 6)) {
    case 0:
      return bytes.text();
    case 1:
      return static_cast<qulonglong>(bytes.next()) << (bytes.next() % 64);
    case 2:
      return static_cast<int>(bytes.next()) - 128;
    case 3:
      return static_cast<double>(bytes.next()) / 3;
    case 4:
      return bytes.next() % 2 == 0;
    case 5:
      return bytes.text().toUtf8();
    case 6:
      return QStringList{bytes.text(), bytes.text()};
    case 7: {
      QVariantMap map;
      for (int left = bytes.next() % 4; left > 0; --left) map[bytes.text()] = argument(bytes, depth + 1);
      return map;
    }
    case 8: {
      QVariantList list;
      for (int left = bytes.next() % 4; left > 0; --left) list.append(argument(bytes, depth + 1));
      return list;
    }
    default:
      return QVariant::fromValue(QDBusVariant(argument(bytes, depth + 1)));
  }
}

/// The door and somebody who knocks.
struct Session {
  int count = 0;
  QCoreApplication application{count, nullptr};
  int performed = 0;
  RemoteCommandService service{identifier,
                               {[this](IntelCommand, const CommandReply& reply) {
                                  ++performed;
                                  if (performed % 2 == 0) return reply({});
                                  reply(std::unexpected("not now"));
                                },
                                [] { return StatusReport{}; }}};
  QDBusConnection caller = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "caller");
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Session session;
  require(session.caller.isConnected(), "there is a bus (run it with private-session)");
  static const std::array interfaces{remote::applicationInterface, remote::dictationInterface,
                                     remote::propertiesInterface, QString()};
  static const std::array methods{"Activate", "Open", "ActivateAction", "Perform", "Get",
                                  "GetAll",   "Set",  "Nothing"};
  Bytes bytes(data, size);
  auto call = QDBusMessage::createMethodCall(identifier, remote::objectPath(identifier),
                                             interfaces.at(bytes.next() % interfaces.size()),
                                             methods.at(bytes.next() % methods.size()));
  if (bytes.next() % 2 == 0) {
    call.setArguments({"toggle", static_cast<qulonglong>(-1)});
  } else {
    QVariantList arguments;
    while (!bytes.empty() && arguments.size() < 6) arguments.append(argument(bytes));
    call.setArguments(arguments);
  }
  const int before = session.performed;
  constexpr int patience = 5'000;
  // It wakes this loop when the answer is there.
  const QDBusPendingCallWatcher pending(session.caller.asyncCall(call, patience));
  while (!pending.isFinished()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  const auto kind = pending.error().type();
  require(kind != QDBusError::NoReply && kind != QDBusError::Timeout, "every call is answered");
  require(session.performed <= before + 1, "a call is one command at most");
  return 0;
}
