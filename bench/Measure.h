// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <algorithm>
#include <functional>
#include <vector>

namespace bench {

/// The median time of one call, in milliseconds, over `rounds` calls after one that does not count.
inline double medianMilliseconds(int rounds, const std::function<void()>& call) {
  call();
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    QElapsedTimer timer;
    timer.start();
    call();
    times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
  }
  std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
  return times[static_cast<std::size_t>(rounds / 2)];
}

}  // namespace bench
