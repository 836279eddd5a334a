#include "Platform/Qt/TrayWatch.h"

#include "Platform/Qt/QtXConnection.h"

#include <QAbstractNativeEventFilter>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <algorithm>

namespace murmel {

namespace {

const auto trayHost = QStringLiteral("org.kde.StatusNotifierWatcher");
const auto trayHostPath = QStringLiteral("/StatusNotifierWatcher");

/// The tray of X, asked over Qt's own connection.
class EmbeddingTray {
 public:
  EmbeddingTray() {
    if (connection_ == nullptr) return;
    selection_ = atomNamed(connection_, "_NET_SYSTEM_TRAY_S0");
    manager_ = atomNamed(connection_, "MANAGER");
    colours_ = atomNamed(connection_, "_NET_SYSTEM_TRAY_COLORS");
  }

  [[nodiscard]] xcb_window_t owner() const {
    return connection_ == nullptr ? xcb_window_t{XCB_WINDOW_NONE} : selectionOwner(connection_, selection_);
  }
  /// A tray tells all clients of the root that it is there.
  [[nodiscard]] bool isAnnouncement(const void* message) const {
    if (connection_ == nullptr) return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) return false;
    const auto* told = reinterpret_cast<const xcb_client_message_event_t*>(event);
    return told->type == manager_ && told->data.data32[1] == selection_;
  }
  /// Trays say in which colour signs are drawn: light ones mean a dark panel.
  [[nodiscard]] std::optional<bool> isDark() const {
    constexpr std::uint32_t colourCount = 12;  // red, green and blue of four
    const auto window = owner();
    if (window == XCB_WINDOW_NONE) return std::nullopt;
    const auto asking = xcb_get_property(connection_, 0, window, colours_, XCB_ATOM_CARDINAL, 0, colourCount);
    const auto reply = ownReply(xcb_get_property_reply(connection_, asking, nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 12) return std::nullopt;
    const auto* parts = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    constexpr std::uint32_t middle = 0x8000;
    return *std::max_element(parts, parts + 3) > middle;
  }

 private:
  xcb_connection_t* connection_ = qtXConnection();
  xcb_atom_t selection_ = XCB_ATOM_NONE;
  xcb_atom_t manager_ = XCB_ATOM_NONE;
  xcb_atom_t colours_ = XCB_ATOM_NONE;
};

}  // namespace

class TrayWatch::Watcher final : public QObject, public QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  explicit Watcher(const Signal<>& changed) : changed_(changed) {
    qGuiApp->installNativeEventFilter(this);
    isEmbeddingThere_ = embedding_.owner() != XCB_WINDOW_NONE;
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    const auto* watcher =
        new QDBusServiceWatcher(trayHost, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
              if (owner.isEmpty())
                take(false);
              else
                ask();
            });
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
      bus.connect(trayHost, trayHostPath, trayHost, QString::fromLatin1(signal), this, SLOT(ask()));
    ask();
  }
  ~Watcher() override {
    if (qGuiApp != nullptr) qGuiApp->removeNativeEventFilter(this);
  }
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

  [[nodiscard]] Tray tray() const {
    if (isHostThere_) return Tray::statusNotifier;
    return isEmbeddingThere_ ? Tray::embedded : Tray::none;
  }
  [[nodiscard]] std::optional<bool> isPanelDark() const {
    if (const auto told = embedding_.isDark(); told && !isHostThere_) return told;
    // Its panel is black whatever the windows are.
    if (qgetenv("XDG_CURRENT_DESKTOP").split(':').contains("GNOME")) return true;
    return std::nullopt;
  }

  bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* /*result*/) override {
    if (kind == "xcb_generic_event_t" && embedding_.isAnnouncement(message)) {
      isEmbeddingThere_ = true;
      changed_.emit();
    }
    return false;
  }

 private Q_SLOTS:
  void ask() {
    auto question = QDBusMessage::createMethodCall(
        trayHost, trayHostPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << trayHost << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
      const QDBusPendingReply<QDBusVariant> reply = *answer;
      take(!reply.isError() && reply.value().variant().toBool());
      answer->deleteLater();
    });
  }

 private:
  void take(bool isHostThere) {
    const bool wasEmbeddingThere = std::exchange(isEmbeddingThere_, embedding_.owner() != XCB_WINDOW_NONE);
    const bool wasHostThere = std::exchange(isHostThere_, isHostThere);
    if (wasHostThere != isHostThere_ || wasEmbeddingThere != isEmbeddingThere_) changed_.emit();
  }

  const Signal<>& changed_;
  EmbeddingTray embedding_;
  bool isEmbeddingThere_ = false;
  bool isHostThere_ = false;
};

TrayWatch::TrayWatch() : watcher_(std::make_unique<Watcher>(changed_)) {}

TrayWatch::~TrayWatch() = default;

TrayWatch::Tray TrayWatch::tray() const {
  return watcher_->tray();
}

std::optional<bool> TrayWatch::isPanelDark() const {
  return watcher_->isPanelDark();
}

}  // namespace murmel

#include "TrayWatch.moc"
