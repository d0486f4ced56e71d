// Where URLs go that the application opens: to the opener outside the device.
#pragma once

#include <cstdint>
#include <functional>

#include <QHash>
#include <QObject>
#include <QUrl>

class QSocketNotifier;

// Main thread. Nothing waits for an answer; it comes through the event loop.
class HostOpener : public QObject {
 public:
  // `unavailable` gets every URL that could not be opened because the host has no program for it, or only one
  // that fails. URLs that the opener refuses get nothing: that is told in its log.
  explicit HostOpener(std::function<void(const QUrl&)> unavailable, QObject* parent = nullptr);
  ~HostOpener() override;

  // Takes the socket over that the launcher has put at `descriptor`, and keeps it from every command. Without
  // it, or where the descriptor is something else, every URL is unavailable.
  void connectTo(int descriptor);

  // Whether the URL was handed over.
  bool open(const QUrl& url);

 private:
  void takeAnswers();
  void report(const QUrl& url);

  std::function<void(const QUrl&)> unavailable_;
  int socket_ = -1;
  QSocketNotifier* answers_ = nullptr;
  std::uint32_t lastNumber_ = 0;
  QHash<std::uint32_t, QUrl> asked_;
};
