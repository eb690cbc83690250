// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

namespace bridge {

/// A DICOM person name (PS3.5 6.2.1) as people read it, on one line. The parts of each component group are
/// ordered "Prefix Given Middle Family, Suffix": "Adams^John Robert Quincy^^Rev.^B.A. M.Div." becomes
/// "Rev. John Robert Quincy Adams, B.A. M.Div.". A group in Chinese, Japanese or Korean script keeps the
/// family name first, as such names are written. The first group that is not empty is the name; the
/// ideographic group follows in parentheses: "Yamada^Tarou=山田^太郎=やまだ^たろう" becomes
/// "Tarou Yamada (山田 太郎)". Control characters are removed. Empty for an empty name.
QString readablePersonName(const QString& dicomName);

}  // namespace bridge
