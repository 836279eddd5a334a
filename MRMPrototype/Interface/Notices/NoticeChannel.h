#pragma once

#include <QString>
#include <functional>
#include <memory>

namespace murmel {

/// The roads by which a message can reach the user, in the order in which they are tried.
struct NoticeRoads {
  /// In a tray that shows messages itself; false when there is none.
  std::function<bool(const QString& title, const QString& text)> tray;
  /// The desktop's notifications; answers whether they took it.
  std::function<void(const QString& title, const QString& text, std::function<void(bool)>)> desktop;
  /// A window of our own, which always can.
  std::function<void(const QString& title, const QString& text)> window;
};

/// Tells the user what no state has room for. Every message arrives by exactly one road. Main thread.
class NoticeChannel {
 public:
  explicit NoticeChannel(NoticeRoads roads) : roads_(std::make_shared<NoticeRoads>(std::move(roads))) {}

  void tell(const QString& title, const QString& text) {
    if (!roads_->tray(title, text)) tellWithoutTray(title, text, [](bool) {});
  }
  /// The same from a process that is about to end, with which a message of the tray would go. `answer` is
  /// told whether this one stays; it does not where only a window could show it.
  void tellAtTheEnd(const QString& title, const QString& text, std::function<void(bool stays)> answer) {
    tellWithoutTray(title, text, std::move(answer));
  }

 private:
  void tellWithoutTray(const QString& title, const QString& text, std::function<void(bool taken)> answer) {
    roads_->desktop(title, text,
                    [weak = std::weak_ptr(roads_), title, text, answer = std::move(answer)](bool taken) {
                      if (const auto roads = weak.lock(); roads && !taken) roads->window(title, text);
                      answer(taken);
                    });
  }

  std::shared_ptr<NoticeRoads> roads_;
};

}  // namespace murmel
