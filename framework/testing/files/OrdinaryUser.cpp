// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/files/OrdinaryUser.h"

#include <unistd.h>

#include <QDirIterator>
#include <QFile>
#include <cstdlib>
#include <stdexcept>

namespace velmora::testkit {

namespace {

constexpr uid_t Nobody = 65534;

void give(const QString& path) {
  if (::lchown(QFile::encodeName(path).constData(), Nobody, Nobody) != 0) throw std::runtime_error("lchown");
}

}  // namespace

OrdinaryUser::OrdinaryUser(const QString& folder) : wasSuperuser_(::geteuid() == 0) {
  if (!wasSuperuser_) return;
  give(folder);
  QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
  while (entries.hasNext()) give(entries.next());
  if (::setresuid(Nobody, Nobody, 0) != 0) throw std::runtime_error("setresuid");
}

OrdinaryUser::~OrdinaryUser() {
  if (wasSuperuser_ && ::setresuid(0, 0, 0) != 0) std::abort();
}

}  // namespace velmora::testkit
