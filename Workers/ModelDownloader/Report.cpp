#include "Workers/ModelDownloader/Report.h"

#include "Foundation/Json/Json.h"
#include "Workers/ModelDownloader/Command.h"

namespace murmel::downloader {

namespace {

struct Describe {
  Json& line;

  void operator()(const ReadyReport&) const { line["event"] = "ready"; }
  void operator()(const ProgressReport& report) const {
    line["event"] = "progress";
    line["identifier"] = report.identifier;
    line["state"] = report.state;
    line["received"] = report.received;
    if (report.total) line["total"] = *report.total;
    if (!report.cause.empty()) line["message"] = report.cause;
  }
  void operator()(const InstalledReport& report) const {
    line["event"] = "installed";
    line["identifier"] = report.identifier;
  }
  void operator()(const FailedReport& report) const {
    line["event"] = "failed";
    line["identifier"] = report.identifier;
    line["reason"] = report.reason;
    line["message"] = report.message;
  }
  void operator()(const CancelledReport& report) const {
    line["event"] = "cancelled";
    line["identifier"] = report.identifier;
  }
  void operator()(const RefusedReport& report) const {
    line["event"] = "refused";
    line["reason"] = report.reason;
    if (report.identifier) line["identifier"] = *report.identifier;
  }
  void operator()(const IdleReport&) const { line["event"] = "idle"; }
  void operator()(const FatalReport& report) const {
    line["event"] = "fatal";
    line["message"] = report.message;
  }
};

}  // namespace

std::string lineFor(const Report& report) {
  Json line{{"mrm_downloader_protocol", protocolVersion}};
  std::visit(Describe{line}, report);
  // File names may hold bytes that are no text.
  return jsonText(line, JsonCharacters::ascii) + '\n';
}

}  // namespace murmel::downloader
