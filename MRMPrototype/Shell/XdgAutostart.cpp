#include "Shell/XdgAutostart.h"

#include <QFile>
#include <QSaveFile>
#include <QString>
#include <QStringList>
#include <system_error>
#include <utility>

namespace murmel {

namespace {

QString fileName(const std::filesystem::path& path) {
  return QString::fromStdString(path.string());
}

/// Whether an entry is there and starts something.
bool startsSomething(const std::filesystem::path& entry) {
  QFile file(fileName(entry));
  if (!file.open(QIODevice::ReadOnly)) return false;
  const auto lines = QString::fromUtf8(file.read(1 << 16)).split(u'\n');
  return !lines.contains(QStringLiteral("Hidden=true")) &&
         !lines.contains(QStringLiteral("X-GNOME-Autostart-enabled=false"));
}

/// A path as an argument of an Exec line.
std::string quoted(const std::filesystem::path& path) {
  std::string result = "\"";
  for (const char c : path.string()) {
    if (c == '"' || c == '`' || c == '$' || c == '\\') result += "\\\\";
    if (c == '%' || c == '\\') result += c;
    result += c;
  }
  return result + '"';
}

}  // namespace

XdgAutostart::XdgAutostart(const std::filesystem::path& configuration, Entry entry,
                           const std::filesystem::path& systemFolder)
    : entry_(std::move(entry)),
      file_(configuration / "autostart" / (entry_.identifier + ".desktop")),
      systemFile_(systemFolder / (entry_.identifier + ".desktop")) {}

bool XdgAutostart::isForAllUsers() const {
  return startsSomething(systemFile_);
}

bool XdgAutostart::isOn() const {
  std::error_code error;
  return std::filesystem::exists(file_, error) ? startsSomething(file_) : isForAllUsers();
}

std::expected<void, std::string> XdgAutostart::set(bool on) {
  if (on == isOn()) return {};
  std::error_code error;
  if (on == isForAllUsers()) {
    std::filesystem::remove(file_, error);
  } else {
    std::filesystem::create_directories(file_.parent_path(), error);
    QSaveFile file(fileName(file_));
    const auto body = "[Desktop Entry]\nType=Application\nName=" + entry_.displayName +
                      "\nExec=" + quoted(entry_.executable) + "\nTerminal=false\n" +
                      (on ? "" : "Hidden=true\n");
    if (!file.open(QIODevice::WriteOnly) || file.write(body.data(), static_cast<qint64>(body.size())) < 0 ||
        !file.commit())
      return std::unexpected("The autostart entry cannot be written: " + file.errorString().toStdString());
  }
  if (error) return std::unexpected("The autostart entry cannot be changed: " + error.message());
  return {};
}

}  // namespace murmel
