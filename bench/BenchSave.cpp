// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The durable write, against the floor of any write that survives a power cut: write, fsync, rename, fsync of
// the folder.
#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QTemporaryDir>
#include <cstdio>

#include "base/files/FileManager.h"
#include "bench/Measure.h"

using namespace velmora;

namespace {

bool floorWrite(const QByteArray& folder, const QByteArray& contents) {
  const QByteArray temporary = folder + "/floor.tmp";
  const QByteArray target = folder + "/floor.growth";
  const int file = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0) return false;
  bool good = ::write(file, contents.constData(), static_cast<size_t>(contents.size())) == contents.size();
  good = ::fsync(file) == 0 && good;
  good = ::close(file) == 0 && good;
  good = ::rename(temporary.constData(), target.constData()) == 0 && good;
  const int directory = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  good = directory >= 0 && ::fsync(directory) == 0 && good;
  if (directory >= 0) ::close(directory);
  return good;
}

}  // namespace

int main() {
  // Not in /tmp, which is often memory: beside the program, where disks are.
  const QTemporaryDir folder(QDir::currentPath() + QStringLiteral("/bench-save-XXXXXX"));
  base::FileManager files;
  constexpr int Rounds = 51;
  bool good = folder.isValid();
  for (const qsizetype size : {1000, 100000}) {
    const QByteArray contents(size, 'x');
    const QString path = folder.filePath(QStringLiteral("ours.growth"));
    const double ours =
        bench::medianMilliseconds(Rounds, [&] { good = files.writeDurably(path, contents).ok() && good; });
    const double floor = bench::medianMilliseconds(
        Rounds, [&] { good = floorWrite(folder.path().toLocal8Bit(), contents) && good; });
    std::printf("%7lld bytes: durable write %.3f ms, floor %.3f ms, ratio %.2f (median of %d)\n",
                static_cast<long long>(size), ours, floor, ours / floor, Rounds);
  }
  if (!good) std::fprintf(stderr, "bench-save: a write failed\n");
  return good ? 0 : 1;
}
