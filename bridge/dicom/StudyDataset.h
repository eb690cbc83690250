// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "bridge/dicom/Study.h"

class DcmItem;

namespace bridge {

/// What a data set says of its study and patient: one that was read from a file, or a PACS's answer to a
/// query. Texts are decoded by the data set's Specific Character Set (PS3.3 C.12.1.1.2). Where that is
/// unknown, or the text is not in it, the text is taken as UTF-8 if it is that, and as Latin-1 otherwise: a
/// few wrong letters rather than no patient. A text is cut after `LongestText` characters, and a date that is
/// no day of the calendar is invalid.
Study studyFrom(DcmItem& dataset);

/// In UTF-16 units, decoded. The longest attribute of a study that PS3.5 allows, a person name, has 3 x 64
/// characters.
inline constexpr int LongestText = 1024;

}  // namespace bridge
