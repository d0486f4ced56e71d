// Sends the URLs that the application opens to the opener outside the device.
#pragma once

#include "core/Descriptor.h"

#include <cstdint>
#include <functional>
#include <memory>

#include <QHash>
#include <QObject>
#include <QSocketNotifier>
#include <QUrl>

// Main thread. Nothing waits for an answer; it comes through the event loop.
class HostOpener : public QObject {
 public:
  // Gets every URL that the host has no program for, or only one that fails, and for a folder its path on the
  // host, which is empty otherwise. URLs that the opener refuses are only written to its log.
  using Unavailable = std::function<void(const QUrl& url, const QString& hostPath)>;
  explicit HostOpener(Unavailable unavailable, QObject* parent = nullptr);

  // Takes ownership of the launcher's socket at `descriptor` and makes it close-on-exec. Without it, or if
  // the descriptor is something else, every URL is unavailable.
  void connectTo(int descriptor);

  // Whether the URL was handed over.
  bool open(const QUrl& url);

 private:
  void takeAnswers();
  void report(const QUrl& url, const QString& hostPath = {});

  Unavailable unavailable_;
  Descriptor socket_;
  // Declared after the socket, since it has to go first.
  std::unique_ptr<QSocketNotifier> answers_;
  std::uint32_t lastNumber_ = 0;
  QHash<std::uint32_t, QUrl> asked_;
};
