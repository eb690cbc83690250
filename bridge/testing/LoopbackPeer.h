// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <thread>

namespace bridge_testing {

/// A listening socket on loopback, on a port chosen free.
class Listener {
 public:
  Listener();
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  int port() const { return port_; }
  /// The next connection, or -1 once closed.
  int accept() const;
  /// Ends accept(), from any thread.
  void close();

 private:
  int socket_ = -1;
  int port_ = 0;
};

/// Takes connections and says nothing: an archive that hangs.
class SilentPeer {
 public:
  int port() const { return listener_.port(); }  // the kernel accepts; nobody ever reads

 private:
  Listener listener_;
};

/// Says something on one connection, whatever it is told, and then something else again and again, with a
/// pause each time, until the other side has had enough.
class PouringPeer {
 public:
  PouringPeer(const std::string& beginning, const std::string& repeated, std::chrono::milliseconds pause);
  ~PouringPeer();
  int port() const { return listener_.port(); }
  /// How many bytes it has got rid of.
  std::size_t poured() const { return poured_; }

 private:
  void run(const std::string& beginning, const std::string& repeated, std::chrono::milliseconds pause);
  std::atomic<std::size_t> poured_ = 0;
  Listener listener_;
  std::thread thread_;
};

/// Hands one connection on to a port, and breaks it off on both sides after so many bytes towards that port.
class CuttingProxy {
 public:
  CuttingProxy(int target, int bytes);
  ~CuttingProxy();
  int port() const { return listener_.port(); }

 private:
  void run(int target, int bytes);
  Listener listener_;
  std::thread thread_;
};

}  // namespace bridge_testing
